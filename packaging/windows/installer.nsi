; The installer. "package" gives VERSION, CONTENT (the folder to be installed), LISTS (the folder with the lists of its files),
; SIZE_KB, ICON, LICENSE_FILE, OUTPUT, and SIGN (a command) if there is a certificate.
;
; Switches: /S installs without questions, /AllUsers or /CurrentUser chooses for whom, /D=FOLDER (the last one, without
; quotes) where. Those of the uninstaller: /S, and /RemoveSettings, which removes the settings, remembered logins and
; snapshots of the user who runs it too. Exit codes: 0 done, 1 cancelled by the user, 2 not possible.
Unicode true
Target amd64-unicode
!ifdef FAST ; only for trials
  SetCompress off
!else
  SetCompressor /SOLID lzma
!endif
ManifestDPIAware true
ManifestSupportedOS Win10
!define PRODUCT "Paravue Setup"
!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\ParavueSetup"

!define MULTIUSER_EXECUTIONLEVEL Highest
!define MULTIUSER_MUI
!define MULTIUSER_INSTALLMODE_COMMANDLINE
!define MULTIUSER_USE_PROGRAMFILES64
!define MULTIUSER_INSTALLMODE_INSTDIR "Paravue Setup"
; An installation that is there already is the one to be upgraded.
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_INSTDIR_REGISTRY_VALUENAME "InstallLocation"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_KEY "${UNINSTALL_KEY}"
!define MULTIUSER_INSTALLMODE_DEFAULT_REGISTRY_VALUENAME "InstallLocation"
!include MultiUser.nsh
!include MUI2.nsh
!include LogicLib.nsh
!include FileFunc.nsh
!include TextFunc.nsh
!include WinVer.nsh

Name "${PRODUCT}"
OutFile "${OUTPUT}"
BrandingText "${PRODUCT} ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey ProductName "${PRODUCT}"
VIAddVersionKey ProductVersion "${VERSION}"
VIAddVersionKey FileVersion "${VERSION}"
VIAddVersionKey FileDescription "Installer of ${PRODUCT}"
VIAddVersionKey CompanyName "${PRODUCT}"
VIAddVersionKey LegalCopyright "MIT License"
!ifdef SIGN
  !finalize '${SIGN} "%1"' = 0
  !uninstfinalize '${SIGN} "%1"' = 0
!endif

!define MUI_ICON "${ICON}"
!define MUI_UNICON "${ICON}"
!define MUI_ABORTWARNING
!insertmacro MUI_PAGE_LICENSE "${LICENSE_FILE}"
!insertmacro MULTIUSER_PAGE_INSTALLMODE
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "Russian"

LangString NeedsWindows10 ${LANG_ENGLISH} "${PRODUCT} needs Windows 10 or later."
LangString NeedsWindows10 ${LANG_RUSSIAN} "Для ${PRODUCT} нужна Windows 10 или новее."
LangString IsRunning ${LANG_ENGLISH} "${PRODUCT} is running, or a host uses its library. Close it and try again."
LangString IsRunning ${LANG_RUSSIAN} "${PRODUCT} запущена, или её библиотеку использует другая программа. Закройте её и повторите."
LangString NeedsAdministrator ${LANG_ENGLISH} "Only an administrator can install or remove ${PRODUCT} for all users."
LangString NeedsAdministrator ${LANG_RUSSIAN} "Только администратор может установить или удалить ${PRODUCT} для всех пользователей."
LangString FolderOfAnother ${LANG_ENGLISH} "Another program is in the folder $INSTDIR. Choose another one."
LangString FolderOfAnother ${LANG_RUSSIAN} "В папке $INSTDIR находится другая программа. Выберите другую папку."
LangString CannotWrite ${LANG_ENGLISH} "The folder $INSTDIR cannot be written. Choose another one."
LangString CannotWrite ${LANG_RUSSIAN} "В папку $INSTDIR нельзя записать. Выберите другую папку."
LangString DemoShortcut ${LANG_ENGLISH} "Paravue Setup, demonstration"
LangString DemoShortcut ${LANG_RUSSIAN} "Paravue Setup, демонстрация"
LangString PromptShortcut ${LANG_ENGLISH} "Paravue Setup, command prompt"
LangString PromptShortcut ${LANG_RUSSIAN} "Paravue Setup, командная строка"
LangString ProgramSection ${LANG_ENGLISH} "Programs"
LangString ProgramSection ${LANG_RUSSIAN} "Программы"
LangString SettingsSection ${LANG_ENGLISH} "Settings, remembered logins and snapshots of recorders"
LangString SettingsSection ${LANG_RUSSIAN} "Настройки, запомненные имена и пароли, снимки регистраторов"

!macro RefuseWhileRunning FOLDER
  ; A program that runs, and a library in use, cannot be opened for writing.
  !insertmacro RefuseWhileOpen "${FOLDER}\paravue-setup.exe"
  !insertmacro RefuseWhileOpen "${FOLDER}\paravue-ctl.exe"
  !insertmacro RefuseWhileOpen "${FOLDER}\paravue-recorder.exe"
  !insertmacro RefuseWhileOpen "${FOLDER}\hvx3-info.exe"
  !insertmacro RefuseWhileOpen "${FOLDER}\ParavueSetup.dll"
!macroend
!macro RefuseWhileOpen FILE
  ${If} ${FileExists} "${FILE}"
    ClearErrors
    FileOpen $0 "${FILE}" a
    ${If} ${Errors}
      MessageBox MB_OK|MB_ICONEXCLAMATION "$(IsRunning)" /SD IDOK
      SetErrorLevel 2
      Abort "$(IsRunning)"
    ${EndIf}
    FileClose $0
  ${EndIf}
!macroend

; MultiUser refuses with a message in English that waits for a click, also where nobody is there to click.
!macro RefuseAllUsersWithoutRights PREFIX UNINSTALLER
  UserInfo::GetAccountType
  Pop $0
  ${${PREFIX}GetParameters} $1
  ${${UNINSTALLER}StrStr} $1 $1 "/AllUsers"
  ${If} $1 != ""
  ${AndIf} $0 != "Admin"
  ${AndIf} $0 != "Power"
    MessageBox MB_OK|MB_ICONSTOP "$(NeedsAdministrator)" /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
!macroend

Var GivenFolder

Function .onInit
  SetRegView 64
  !insertmacro RefuseAllUsersWithoutRights "" ""
  ; What /D has named, which MultiUser would replace.
  StrCpy $GivenFolder $INSTDIR
  !insertmacro MULTIUSER_INIT
  ${If} $GivenFolder != ""
    StrCpy $INSTDIR $GivenFolder
  ${EndIf}
  ${IfNot} ${AtLeastWin10}
    MessageBox MB_OK|MB_ICONSTOP "$(NeedsWindows10)" /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
FunctionEnd

Var OwnFolder

Function un.onInit
  SetRegView 64
  !insertmacro RefuseAllUsersWithoutRights un. Un
  ; Where this uninstaller is, which MultiUser would replace by the folder of the latest installation.
  StrCpy $OwnFolder $INSTDIR
  !insertmacro MULTIUSER_UNINIT
  StrCpy $INSTDIR $OwnFolder
FunctionEnd

; TextCompare restores the registers when it ends.
Var ComputerSettings

Function NoteDifference
  StrCpy $ComputerSettings changed
  StrCpy $0 StopTextCompare
  Push $0
FunctionEnd

; The file holds settings for all users of this computer. What an administrator has changed in it stays.
Function InstallDefaultSettings
  SetOutPath "$INSTDIR"
  StrCpy $ComputerSettings same
  ${If} ${FileExists} "$INSTDIR\settings.ini"
    ${If} ${FileExists} "$INSTDIR\settings.ini.delivered"
      ${TextCompareS} "$INSTDIR\settings.ini" "$INSTDIR\settings.ini.delivered" "FastDiff" NoteDifference
    ${Else}
      StrCpy $ComputerSettings changed
    ${EndIf}
  ${EndIf}
  File "/oname=settings.ini.delivered" "${CONTENT}/settings.ini"
  ${If} $ComputerSettings == same
    File "${CONTENT}/settings.ini"
  ${EndIf}
FunctionEnd

Var EarlierFolder

Function RefuseFolderOfAnother
  ${If} $EarlierFolder != $INSTDIR
  ${AndIf} ${FileExists} "$INSTDIR\uninstall.exe"
  ${AndIfNot} ${FileExists} "$INSTDIR\paravue-setup.exe"
    MessageBox MB_OK|MB_ICONEXCLAMATION "$(FolderOfAnother)" /SD IDOK
    SetErrorLevel 2
    Abort "$(FolderOfAnother)"
  ${EndIf}
FunctionEnd

; Before an earlier version goes.
Function RefuseFolderWithoutRights
  ClearErrors
  CreateDirectory "$INSTDIR"
  FileOpen $0 "$INSTDIR\install.tmp" w
  ${If} ${Errors}
    RMDir "$INSTDIR" ; unless it holds something
    MessageBox MB_OK|MB_ICONEXCLAMATION "$(CannotWrite)" /SD IDOK
    SetErrorLevel 2
    Abort "$(CannotWrite)"
  ${EndIf}
  FileClose $0
  Delete "$INSTDIR\install.tmp"
FunctionEnd

; The earlier version knows which files it has brought.
Function RemoveEarlierVersion
  !insertmacro RefuseWhileRunning "$EarlierFolder"
  Call RefuseFolderWithoutRights
  ExecWait '"$EarlierFolder\uninstall.exe" /S /$MultiUser.InstallMode /Upgrade _?=$EarlierFolder' $0
  ${If} $0 <> 0
    SetErrorLevel 2
    Abort
  ${EndIf}
  ${If} $EarlierFolder != $INSTDIR
    ; The settings of the computer move along. Where there are some already, both stay.
    SetOutPath "$INSTDIR"
    ${IfNot} ${FileExists} "$INSTDIR\settings.ini"
      Rename "$EarlierFolder\settings.ini" "$INSTDIR\settings.ini"
      Rename "$EarlierFolder\settings.ini.delivered" "$INSTDIR\settings.ini.delivered"
    ${EndIf}
    Delete "$EarlierFolder\uninstall.exe"
    RMDir "$EarlierFolder" ; not what others have put there
  ${EndIf}
FunctionEnd

Section "$(ProgramSection)"
  ; Only a registered uninstaller is run: any program may have one of that name.
  ReadRegStr $EarlierFolder SHCTX "${UNINSTALL_KEY}" "InstallLocation"
  Call RefuseFolderOfAnother
  !insertmacro RefuseWhileRunning "$INSTDIR"
  ${If} $EarlierFolder != ""
  ${AndIf} ${FileExists} "$EarlierFolder\uninstall.exe"
    Call RemoveEarlierVersion
  ${EndIf}
  Call InstallDefaultSettings
  ClearErrors
  !include "${LISTS}/install.nsh"
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"
  ${If} ${Errors}
    SetErrorLevel 2
    Abort
  ${EndIf}
  CreateDirectory "$SMPROGRAMS\Paravue Setup"
  CreateShortcut "$SMPROGRAMS\Paravue Setup\$(DemoShortcut).lnk" "$INSTDIR\paravue-setup.exe" "--demo"
  CreateShortcut "$SMPROGRAMS\Paravue Setup\$(PromptShortcut).lnk" "$SYSDIR\cmd.exe" \
    '/k "set PATH=$INSTDIR;%PATH%& paravue-setup --help"' "$INSTDIR\paravue-setup.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayName "${PRODUCT}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayVersion "${VERSION}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" DisplayIcon "$INSTDIR\paravue-setup.exe"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" Publisher "${PRODUCT}"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" InstallLocation "$INSTDIR"
  WriteRegStr SHCTX "${UNINSTALL_KEY}" UninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode'
  WriteRegStr SHCTX "${UNINSTALL_KEY}" QuietUninstallString '"$INSTDIR\uninstall.exe" /$MultiUser.InstallMode /S'
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" EstimatedSize ${SIZE_KB}
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoModify 1
  WriteRegDWORD SHCTX "${UNINSTALL_KEY}" NoRepair 1
SectionEnd

Section "un.$(ProgramSection)"
  SectionIn RO
  !insertmacro RefuseWhileRunning "$INSTDIR"
  !include "${LISTS}/remove.nsh"
  Delete "$INSTDIR\uninstall.exe"
  ${GetParameters} $2
  ClearErrors
  ${GetOptions} $2 "/Upgrade" $3
  ${If} ${Errors} ; it is not the first half of an upgrade
    Delete "$INSTDIR\settings.ini"
    Delete "$INSTDIR\settings.ini.delivered"
    ReadRegStr $3 SHCTX "${UNINSTALL_KEY}" "InstallLocation"
    ${If} $3 == $INSTDIR
    ${OrIfNot} ${FileExists} "$3\uninstall.exe" ; else it is of another installation
      RMDir /r "$SMPROGRAMS\Paravue Setup"
      DeleteRegKey SHCTX "${UNINSTALL_KEY}"
    ${EndIf}
    SetOutPath "$TEMP"
    RMDir "$INSTDIR" ; not what others have put there
  ${EndIf}
SectionEnd

Section /o "un.$(SettingsSection)" RemoveSettings
  Call un.RemoveSettings
SectionEnd

Function un.RemoveSettings
  ; The folder belongs to the user, whoever the program was installed for.
  SetShellVarContext current
  RMDir /r "$LOCALAPPDATA\Paravue"
FunctionEnd

Function un.onUninstSuccess
  ${If} ${Silent}
    ${GetParameters} $2
    ClearErrors
    ${GetOptions} $2 "/RemoveSettings" $3
    ${IfNot} ${Errors}
      Call un.RemoveSettings
    ${EndIf}
  ${EndIf}
FunctionEnd
