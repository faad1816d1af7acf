// Windows' own hands on a settings file: profile FILE SECTION KEY prints a value, with a fourth argument sets
// it.
#include <windows.h>

#include <cstdio>

int main(int count, char *arguments[])
{
    char value[2048] = "";
    if (count == 5)
        return !WritePrivateProfileStringA(arguments[2], arguments[3], arguments[4], arguments[1]);
    GetPrivateProfileStringA(arguments[2], arguments[3], "", value, sizeof value, arguments[1]);
    std::puts(value);
}
