; The setup: installs the program for one user, without an administrator's rights. tools/windows_setup compiles it, and
; makes the lists of what it installs and removes.
Target amd64-unicode
Unicode true
!include LogicLib.nsh
!include FileFunc.nsh
!include "${GENERATED}/product.nsh" ; PUBLISHER and RIGHTS

Name "Vellomir"
OutFile "${SETUP}"
Icon "${GENERATED}/vellomir.ico"
UninstallIcon "${GENERATED}/vellomir.ico"
BrandingText "Vellomir ${VERSION}"
VIProductVersion "${VERSION}.0"
VIAddVersionKey "CompanyName" "${PUBLISHER}"
VIAddVersionKey "FileDescription" "Vellomir Setup"
VIAddVersionKey "FileVersion" "${VERSION}"
VIAddVersionKey "LegalCopyright" "${RIGHTS}"
VIAddVersionKey "ProductName" "Vellomir"
VIAddVersionKey "ProductVersion" "${VERSION}"

!define KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Vellomir" ; the entry in "Apps"
InstallDir "$LOCALAPPDATA\Programs\Vellomir"
InstallDirRegKey HKCU "${KEY}" "InstallLocation"
RequestExecutionLevel user
SetCompressor /SOLID lzma
AllowSkipFiles off ; a file that cannot be written ends the setup
ManifestDPIAware true
SubCaption 4 " " ; in place of "Completed", which it says of a failure, too

Page directory
Page instfiles
UninstPage uninstConfirm
UninstPage instfiles

; Goes on when nobody runs the program in the folder $0: Windows lets nobody write to a program that runs. A silent
; setup ends with exit code 2 in place of waiting.
!macro AwaitEnd un
Function ${un}AwaitEnd
  ${Do}
    ${IfNot} ${FileExists} "$0\Vellomir.exe"
      Return
    ${EndIf}
    ClearErrors
    FileOpen $1 "$0\Vellomir.exe" a
    ${IfNot} ${Errors}
      FileClose $1
      Return
    ${EndIf}
    MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "Vellomir is running. Close it, and then press Retry.$\n$\nNothing has been changed yet." /SD IDCANCEL IDRETRY +3
    SetErrorLevel 2
    Quit
  ${Loop}
FunctionEnd
!macroend
!insertmacro AwaitEnd ""
!insertmacro AwaitEnd "un."

Function .onInit
  ReadRegStr $0 HKLM "Software\Microsoft\Windows NT\CurrentVersion" "CurrentBuildNumber"
  ${If} $0 < 17763
    MessageBox MB_OK|MB_ICONSTOP "Vellomir needs Windows 10, version 1809, or later." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}
FunctionEnd

Section
  StrCpy $0 $INSTDIR
  Call AwaitEnd
  ReadRegStr $0 HKCU "${KEY}" "InstallLocation"
  Call AwaitEnd

  ClearErrors
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.new"
  ${If} ${Errors}
    MessageBox MB_OK|MB_ICONSTOP "$INSTDIR cannot be written to." /SD IDOK
    SetErrorLevel 2
    Quit
  ${EndIf}

  ; The version that is installed removes its own files; it stays in "Apps" and in the Start menu until it is replaced.
  ${If} $0 != ""
  ${AndIf} ${FileExists} "$0\uninstall.exe"
    ExecWait '"$0\uninstall.exe" /S /upgrade _?=$0' $1
    ${If} $1 != 0
      Delete "$INSTDIR\uninstall.new"
      MessageBox MB_OK|MB_ICONSTOP "The version in $0 cannot be removed, so this one is not installed." /SD IDOK
      SetErrorLevel 2
      Quit
    ${EndIf}
    Delete "$0\uninstall.exe"
    RMDir "$0"
  ${EndIf}

  Delete "$INSTDIR\uninstall.exe"
  Rename "$INSTDIR\uninstall.new" "$INSTDIR\uninstall.exe"
  WriteRegStr HKCU "${KEY}" "DisplayName" "Vellomir"
  WriteRegStr HKCU "${KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${KEY}" "Publisher" "${PUBLISHER}"
  WriteRegStr HKCU "${KEY}" "DisplayIcon" "$INSTDIR\Vellomir.exe"
  WriteRegStr HKCU "${KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  SectionGetSize 0 $0
  WriteRegDWORD HKCU "${KEY}" "EstimatedSize" $0
  WriteRegDWORD HKCU "${KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${KEY}" "NoRepair" 1
  !include "${LISTS}/install.nsh"
  CreateShortcut "$SMPROGRAMS\Vellomir.lnk" "$INSTDIR\Vellomir.exe"
SectionEnd

; Files that the setup did not install stay, and the settings.
Section "Uninstall"
  StrCpy $0 $INSTDIR
  Call un.AwaitEnd
  !include "${LISTS}/uninstall.nsh"
  Delete "$INSTDIR\uninstall.exe"
  RMDir "$INSTDIR"
  ${GetParameters} $0
  ClearErrors
  ${GetOptions} $0 "/upgrade" $1
  ${If} ${Errors}
    Delete "$SMPROGRAMS\Vellomir.lnk"
    DeleteRegKey HKCU "${KEY}"
  ${EndIf}
SectionEnd
