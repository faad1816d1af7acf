# Who publishes the program, as the about window says it. A distributor sets these when configuring.
set(VELLOMIR_PUBLISHER_NAME "The Vellomir authors" CACHE STRING "Publisher's name")
set(VELLOMIR_PUBLISHER_STREET "1 Example Street" CACHE STRING "Publisher's street address")
set(VELLOMIR_PUBLISHER_TOWN "Exampletown, EX 00000" CACHE STRING "Publisher's town, state and postal code")
set(VELLOMIR_PUBLISHER_TELEPHONE "(202) 555-0142" CACHE STRING "Publisher's telephone number")
set(VELLOMIR_PUBLISHER_RIGHTS "© Vellomir authors, MIT licence" CACHE STRING "Rights notice, one line")
set(VELLOMIR_PUBLISHER_ADDRESS "https://vellomir.example.org/" CACHE STRING "Publisher's web site")

configure_file(${CMAKE_CURRENT_LIST_DIR}/publisher.h.in ${PROJECT_BINARY_DIR}/generated/publisher.h @ONLY)
