; The installer: for one user, without administrator rights. packaging/installer/make.sh calls makensis with
;   VERSION   1.2.3-dev+0123   FILES  generated: the macros InstallFiles and RemoveFiles
;   NUMBERS   1.2.3                SIDE   the picture of the first and the last page
;   SIZE_KB   of all files     ROOT   this source tree
;   OUT       the installer        HOME   the publisher's page; empty: none
;   SIGN      the command that signs a file, which it gets as its last argument; empty: none
;
; Switches besides those of every NSIS installer (/S silent, /D=folder last):
;   /ASSOC /NOASSOC   associates all kinds of files, or takes that back; without either it stays as it is
;   /DESKTOP          makes the shortcut on the desktop
; The uninstaller, uninstall.exe, knows:
;   /DELETEUSER       also removes settings, lists and crash notes, which otherwise stay
;   /UPGRADE          removes the files only; for an installer that puts its own in their place
; Exit code 2: the program is running, or its file is in use.
Target amd64-unicode
Unicode true

!define UNINSTALL_KEY "Software\Microsoft\Windows\CurrentVersion\Uninstall\Quenlox"
!define OWN_KEY "Software\Quenlox"
!define EXIT_IN_USE 2
; The first Windows whose functions the program uses: version 1703.
!define OLDEST_BUILD 15063

Name "Quenlox"
OutFile "${OUT}"
SetCompressor /SOLID lzma
!if "${SIGN}" != ""
  !uninstfinalize '${SIGN} "%1"' = 0
!endif
RequestExecutionLevel user
ManifestDPIAware true
InstallDir "$LOCALAPPDATA\Programs\Quenlox"
InstallDirRegKey HKCU "${UNINSTALL_KEY}" "InstallLocation"
AllowSkipFiles off
BrandingText "Quenlox ${VERSION}"

!include MUI2.nsh
!include FileFunc.nsh
!include LogicLib.nsh
!include Sections.nsh
!include WinVer.nsh
!include "${FILES}"
!include "${ROOT}/packaging/installer/associations.nsh"

Var UpgradeOnly  ; the uninstaller was called by an installer

!define MUI_ICON "${ROOT}/packaging/icon/quenlox.ico"
!define MUI_UNICON "${ROOT}/packaging/icon/quenlox.ico"
!define MUI_WELCOMEFINISHPAGE_BITMAP "${SIDE}"
!define MUI_ABORTWARNING
!define MUI_COMPONENTSPAGE_SMALLDESC
!define MUI_LANGDLL_ALLLANGUAGES
!define MUI_LANGDLL_WINDOWTITLE "Quenlox"
!define MUI_LANGDLL_INFO "Language / 言語"
!define MUI_LANGDLL_REGISTRY_ROOT HKCU
!define MUI_LANGDLL_REGISTRY_KEY "${OWN_KEY}"
!define MUI_LANGDLL_REGISTRY_VALUENAME "Language"

!define MUI_LICENSEPAGE_TEXT_TOP "$(LicenceTop)"
!define MUI_LICENSEPAGE_TEXT_BOTTOM "$(LicenceBottom)"
!define MUI_LICENSEPAGE_BUTTON "$(^NextBtn)"
!insertmacro MUI_PAGE_LICENSE "${ROOT}/LICENSE"
!insertmacro MUI_PAGE_COMPONENTS
!define MUI_PAGE_CUSTOMFUNCTION_PRE SkipWhenInstalled
!insertmacro MUI_PAGE_DIRECTORY
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN "$INSTDIR\Quenlox.exe"
!insertmacro MUI_PAGE_FINISH

!define MUI_PAGE_CUSTOMFUNCTION_SHOW un.HideSpace
!insertmacro MUI_UNPAGE_COMPONENTS
!insertmacro MUI_UNPAGE_INSTFILES

; The first one serves where the system speaks neither.
!insertmacro MUI_LANGUAGE "English"
!insertmacro MUI_LANGUAGE "Japanese"
!insertmacro MUI_RESERVEFILE_LANGDLL
!include "${ROOT}/packaging/installer/texts.nsh"
!include "${ROOT}/packaging/installer/formats.nsh"

VIProductVersion "${NUMBERS}.0"
!macro VersionTexts LANGUAGE_ID
  VIAddVersionKey /LANG=${LANGUAGE_ID} "ProductName" "Quenlox"
  VIAddVersionKey /LANG=${LANGUAGE_ID} "ProductVersion" "${VERSION}"
  VIAddVersionKey /LANG=${LANGUAGE_ID} "FileVersion" "${VERSION}"
  VIAddVersionKey /LANG=${LANGUAGE_ID} "FileDescription" "Quenlox Setup"
  VIAddVersionKey /LANG=${LANGUAGE_ID} "CompanyName" "Quenlox"
  VIAddVersionKey /LANG=${LANGUAGE_ID} "LegalCopyright" "MIT License"
!macroend
!insertmacro VersionTexts ${LANG_ENGLISH}
!insertmacro VersionTexts ${LANG_JAPANESE}

; A running program holds its file, and so does a virus scanner for a moment: the user is asked until it is free.
!macro DefineWaitUntilClosed PREFIX
  Function ${PREFIX}WaitUntilClosed
    ${DoWhile} ${FileExists} "$INSTDIR\Quenlox.exe"
      ClearErrors
      FileOpen $0 "$INSTDIR\Quenlox.exe" a
      ${IfNot} ${Errors}
        FileClose $0
        ${Break}
      ${EndIf}
      ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION "$(Running)" /SD IDCANCEL IDCANCEL`
        SetErrorLevel ${EXIT_IN_USE}
        Abort "$(Running)"
      ${EndIf}
    ${Loop}
  FunctionEnd
!macroend
!insertmacro DefineWaitUntilClosed ""
!insertmacro DefineWaitUntilClosed "un."

; Takes away the files of the version that is there, of which only its own uninstaller knows the names. Settings, lists,
; shortcuts and associations stay.
Function RemoveOldVersion
  ReadRegStr $1 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $1 == ""
  ${OrIfNot} ${FileExists} "$1\uninstall.exe"
    Return
  ${EndIf}
  ExecWait '"$1\uninstall.exe" /S /UPGRADE _?=$1' $0
  ${If} $0 <> 0
    SetErrorLevel $0
    Abort "$(OldVersionStays)"
  ${EndIf}
  Delete "$1\uninstall.exe"
  RMDir "$1"  ; it goes only when it is another folder than the new one and nothing of the user's is in it
FunctionEnd

Section "$(SectionProgram)" SectionProgram
  SectionIn RO
  Call WaitUntilClosed
  Call RemoveOldVersion
  !insertmacro InstallFiles
  SetOutPath "$INSTDIR"
  WriteUninstaller "$INSTDIR\uninstall.exe"

  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayName" "Quenlox"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayVersion" "${VERSION}"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "Publisher" "Quenlox"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "DisplayIcon" "$INSTDIR\Quenlox.exe,0"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "HelpLink" "$INSTDIR\Quenlox.html"
  !if "${HOME}" != ""
    WriteRegStr HKCU "${UNINSTALL_KEY}" "URLInfoAbout" "${HOME}"
  !else
    WriteRegStr HKCU "${UNINSTALL_KEY}" "URLInfoAbout" "$INSTDIR\README.txt"
  !endif
  WriteRegStr HKCU "${UNINSTALL_KEY}" "InstallLocation" "$INSTDIR"
  WriteRegStr HKCU "${UNINSTALL_KEY}" "UninstallString" '"$INSTDIR\uninstall.exe"'
  WriteRegStr HKCU "${UNINSTALL_KEY}" "QuietUninstallString" '"$INSTDIR\uninstall.exe" /S'
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "EstimatedSize" ${SIZE_KB}
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoModify" 1
  WriteRegDWORD HKCU "${UNINSTALL_KEY}" "NoRepair" 1
  WriteRegStr HKCU "${OWN_KEY}" "Language" $LANGUAGE
SectionEnd

Section "$(SectionStartMenu)" SectionStartMenu
  CreateShortcut "$SMPROGRAMS\Quenlox.lnk" "$INSTDIR\Quenlox.exe"
SectionEnd

Section /o "$(SectionDesktop)" SectionDesktop
  CreateShortcut "$DESKTOP\Quenlox.lnk" "$INSTDIR\Quenlox.exe"
SectionEnd

SectionGroup "$(SectionAssociations)" SectionAssociations
  !insertmacro EachKind AssociationSection
SectionGroupEnd

Section "-associations"
  !insertmacro ApplyAssociations
SectionEnd

!insertmacro MUI_FUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionProgram} "$(AboutProgram)"
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionStartMenu} "$(AboutStartMenu)"
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionDesktop} "$(AboutDesktop)"
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionAssociations} "$(AboutAssociations)"
  !insertmacro EachKind AssociationDescription
!insertmacro MUI_FUNCTION_DESCRIPTION_END

; A version that is there is replaced where it is.
Function SkipWhenInstalled
  ReadRegStr $0 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 == $INSTDIR
    Abort
  ${EndIf}
FunctionEnd

Function .onInit
  ${IfNot} ${AtLeastWin10}
  ${OrIfNot} ${AtLeastBuild} ${OLDEST_BUILD}
    MessageBox MB_OK|MB_ICONSTOP "$(TooOld)" /SD IDOK
    Abort
  ${EndIf}
  !insertmacro MUI_LANGDLL_DISPLAY
  ; What an earlier installation has made is ticked, so that it stays unless the user takes the tick away.
  ReadRegStr $0 HKCU "${UNINSTALL_KEY}" "InstallLocation"
  ${If} $0 != ""
  ${AndIfNot} ${FileExists} "$SMPROGRAMS\Quenlox.lnk"
    !insertmacro UnselectSection ${SectionStartMenu}
  ${EndIf}
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/DESKTOP" $0
  ${IfNot} ${Errors}
  ${OrIf} ${FileExists} "$DESKTOP\Quenlox.lnk"
    !insertmacro SelectSection ${SectionDesktop}
  ${EndIf}
  !insertmacro EachKind SelectAsAssociated
  ClearErrors
  ${GetOptions} $R0 "/ASSOC" $0
  ${IfNot} ${Errors}
    !insertmacro EachKind SelectKind
  ${EndIf}
  ClearErrors
  ${GetOptions} $R0 "/NOASSOC" $0
  ${IfNot} ${Errors}
    !insertmacro EachKind UnselectKind
  ${EndIf}
FunctionEnd

Section "un.$(SectionProgram)" UnSectionProgram
  SectionIn RO
  Call un.WaitUntilClosed
  !insertmacro RemoveFiles
  ${If} $UpgradeOnly == 1
    Return
  ${EndIf}
  Delete "$INSTDIR\uninstall.exe"
  Delete "$SMPROGRAMS\Quenlox.lnk"
  Delete "$DESKTOP\Quenlox.lnk"
  !insertmacro TakeBackAssociations
  DeleteRegKey HKCU "${OWN_KEY}"
  DeleteRegKey HKCU "${UNINSTALL_KEY}"
  SetOutPath "$TEMP"
  RMDir "$INSTDIR"  ; what the user has in it stays
SectionEnd

Section /o "un.$(SectionUserFiles)" UnSectionUserFiles
  Delete "$INSTDIR\Quenlox.ini"
  Delete "$INSTDIR\Quenlox.m3u"
  Delete "$INSTDIR\Quenlox.log"
  RMDir "$INSTDIR"
  ; Where they are kept when the program's folder cannot be written, and what crashes have left.
  Delete "$APPDATA\Quenlox\Quenlox.ini"
  Delete "$APPDATA\Quenlox\Quenlox.m3u"
  Delete "$APPDATA\Quenlox\Quenlox.log"
  RMDir "$APPDATA\Quenlox"
  Delete "$LOCALAPPDATA\Quenlox\crash\Quenlox-*.txt"
  Delete "$LOCALAPPDATA\Quenlox\crash\Quenlox-*.dmp"
  RMDir "$LOCALAPPDATA\Quenlox\crash"
  RMDir "$LOCALAPPDATA\Quenlox"
SectionEnd

!insertmacro MUI_UNFUNCTION_DESCRIPTION_BEGIN
  !insertmacro MUI_DESCRIPTION_TEXT ${UnSectionProgram} "$(AboutUnProgram)"
  !insertmacro MUI_DESCRIPTION_TEXT ${UnSectionUserFiles} "$(AboutUserFiles)"
!insertmacro MUI_UNFUNCTION_DESCRIPTION_END

; Removing needs no space.
Function un.HideSpace
  ShowWindow $mui.ComponentsPage.SpaceRequired ${SW_HIDE}
FunctionEnd

Function un.onInit
  !insertmacro MUI_UNGETLANGUAGE
  ${GetParameters} $R0
  ClearErrors
  ${GetOptions} $R0 "/UPGRADE" $0
  ${IfNot} ${Errors}
    StrCpy $UpgradeOnly 1
    Return
  ${EndIf}
  ClearErrors
  ${GetOptions} $R0 "/DELETEUSER" $0
  ${IfNot} ${Errors}
    !insertmacro SelectSection ${UnSectionUserFiles}
  ${EndIf}
FunctionEnd
