# What Windows shows of the program without starting it: its name, icon and version; and how it wants to be run.
set_target_properties(vellomir PROPERTIES OUTPUT_NAME Vellomir)

find_program(VELLOMIR_CONVERT convert REQUIRED)
set(icon ${PROJECT_BINARY_DIR}/generated/vellomir.ico)
set(pictures)
foreach(size IN ITEMS 16 32 48 256)
    list(APPEND pictures ${PROJECT_SOURCE_DIR}/data/icons/vellomir-${size}.png)
endforeach()
add_custom_command(OUTPUT ${icon}
    COMMAND ${VELLOMIR_CONVERT} ${pictures} -strip ${icon}
    DEPENDS ${pictures}
    VERBATIM)

enable_language(RC)
set(resources ${PROJECT_BINARY_DIR}/generated/vellomir.rc)
configure_file(${CMAKE_CURRENT_LIST_DIR}/vellomir.rc.in ${resources} @ONLY)
set(manifest ${CMAKE_CURRENT_LIST_DIR}/vellomir.manifest)
set_source_files_properties(${resources} PROPERTIES OBJECT_DEPENDS "${icon};${manifest}")
target_sources(vellomir PRIVATE ${resources})
