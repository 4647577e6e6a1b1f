/* Runs a program without the rights of an administrator, and ends with its exit code.
 *
 *     as-user PROGRAM [ARGUMENT...] */

#include <windows.h>

#include <stdio.h>
#include <wchar.h>

enum { NotStarted = 100 };

/* What stands behind the name of this program, quoted as it came. */
static wchar_t *rest_of_line(wchar_t *line)
{
    line = wcschr(line + 1, *line == L'"' ? L'"' : L' ');
    return line ? line + 1 + wcsspn(line + 1, L" ") : L"";
}

static BOOL drop_rights(HANDLE *token)
{
    BYTE sid[SECURITY_MAX_SID_SIZE];
    DWORD size = sizeof sid;
    SID_AND_ATTRIBUTES administrators = {sid, 0};
    HANDLE own;
    return CreateWellKnownSid(WinBuiltinAdministratorsSid, NULL, sid, &size) &&
           OpenProcessToken(GetCurrentProcess(), TOKEN_ALL_ACCESS, &own) &&
           CreateRestrictedToken(own, 0, 1, &administrators, 0, NULL, 0, NULL, token);
}

int wmain(void)
{
    STARTUPINFOW startup = {.cb = sizeof startup};
    PROCESS_INFORMATION program;
    HANDLE token;
    DWORD code = NotStarted;
    if (!drop_rights(&token) || !CreateProcessAsUserW(token, NULL, rest_of_line(GetCommandLineW()), NULL,
                                                      NULL, FALSE, 0, NULL, NULL, &startup, &program)) {
        fprintf(stderr, "as-user: error %lu\n", GetLastError());
        return NotStarted;
    }
    WaitForSingleObject(program.hProcess, INFINITE);
    GetExitCodeProcess(program.hProcess, &code);
    return (int)code;
}
