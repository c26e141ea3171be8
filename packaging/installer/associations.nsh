; Which program opens a file: kinds of files with a class Quenlox.<kind> each, and the extensions that belong to them.
; Everything is written for this user alone. What an extension stood for before is kept in OWN_KEY\Before and comes back
; when the association is taken back, unless another program has taken the extension meanwhile. Since Windows 10 a choice
; that the user makes in the settings goes before all this; the capabilities are what that page offers. Which kinds and
; extensions there are stands in formats.nsh.
!define CLASSES "Software\Classes"
!define CAPABILITIES "${OWN_KEY}\Capabilities"

!macro AssociationSection KIND
  Section /o "$(Kind_${KIND})" SectionKind_${KIND}
  SectionEnd
!macroend

!macro AssociationDescription KIND
  !insertmacro MUI_DESCRIPTION_TEXT ${SectionKind_${KIND}} "$(AboutAssociations)"
!macroend

!macro SelectKind KIND
  !insertmacro SelectSection ${SectionKind_${KIND}}
!macroend

!macro UnselectKind KIND
  !insertmacro UnselectSection ${SectionKind_${KIND}}
!macroend

!macro SelectAsAssociated KIND
  ReadRegStr $0 HKCU "${CLASSES}\Quenlox.${KIND}" ""
  ${If} $0 != ""
    !insertmacro SelectSection ${SectionKind_${KIND}}
  ${EndIf}
!macroend

!macro MakeClass KIND
  ${If} ${SectionIsSelected} ${SectionKind_${KIND}}
    WriteRegStr HKCU "${CLASSES}\Quenlox.${KIND}" "" "$(Kind_${KIND})"
    WriteRegStr HKCU "${CLASSES}\Quenlox.${KIND}\DefaultIcon" "" "$INSTDIR\Quenlox.exe,0"
    WriteRegStr HKCU "${CLASSES}\Quenlox.${KIND}\shell\open\command" "" '"$INSTDIR\Quenlox.exe" "%1"'
    WriteRegStr HKCU "${CAPABILITIES}" "ApplicationName" "Quenlox"
    WriteRegStr HKCU "${CAPABILITIES}" "ApplicationDescription" "$(AboutProgram)"
    WriteRegStr HKCU "Software\RegisteredApplications" "Quenlox" "${CAPABILITIES}"
  ${EndIf}
!macroend

!macro Associate EXTENSION KIND
  ReadRegStr $0 HKCU "${CLASSES}\.${EXTENSION}" ""
  ${If} $0 != "Quenlox.${KIND}"
    WriteRegStr HKCU "${OWN_KEY}\Before" ".${EXTENSION}" "$0"
    WriteRegStr HKCU "${CLASSES}\.${EXTENSION}" "" "Quenlox.${KIND}"
  ${EndIf}
  WriteRegStr HKCU "${CLASSES}\.${EXTENSION}\OpenWithProgids" "Quenlox.${KIND}" ""
  WriteRegStr HKCU "${CAPABILITIES}\FileAssociations" ".${EXTENSION}" "Quenlox.${KIND}"
!macroend

!macro TakeBack EXTENSION KIND
  ReadRegStr $0 HKCU "${CAPABILITIES}\FileAssociations" ".${EXTENSION}"
  ${If} $0 != ""
    ReadRegStr $0 HKCU "${CLASSES}\.${EXTENSION}" ""
    ReadRegStr $1 HKCU "${OWN_KEY}\Before" ".${EXTENSION}"
    ${If} $0 == "Quenlox.${KIND}"
      ${If} $1 == ""
        DeleteRegValue HKCU "${CLASSES}\.${EXTENSION}" ""
      ${Else}
        WriteRegStr HKCU "${CLASSES}\.${EXTENSION}" "" "$1"
      ${EndIf}
    ${EndIf}
    DeleteRegValue HKCU "${OWN_KEY}\Before" ".${EXTENSION}"
    DeleteRegValue HKCU "${CAPABILITIES}\FileAssociations" ".${EXTENSION}"
    DeleteRegValue HKCU "${CLASSES}\.${EXTENSION}\OpenWithProgids" "Quenlox.${KIND}"
    DeleteRegKey /ifempty HKCU "${CLASSES}\.${EXTENSION}\OpenWithProgids"
    DeleteRegKey /ifempty HKCU "${CLASSES}\.${EXTENSION}"
  ${EndIf}
!macroend

!macro ApplyToExtension EXTENSION KIND
  ${If} ${SectionIsSelected} ${SectionKind_${KIND}}
    !insertmacro Associate ${EXTENSION} ${KIND}
  ${Else}
    !insertmacro TakeBack ${EXTENSION} ${KIND}
  ${EndIf}
!macroend

!macro RemoveUnselectedClass KIND
  ${IfNot} ${SectionIsSelected} ${SectionKind_${KIND}}
    DeleteRegKey HKCU "${CLASSES}\Quenlox.${KIND}"
  ${EndIf}
!macroend

!macro RemoveClass KIND
  DeleteRegKey HKCU "${CLASSES}\Quenlox.${KIND}"
!macroend

; Without an extension left there is nothing to offer in the settings either.
!macro RemoveEmptyCapabilities
  DeleteRegKey /ifempty HKCU "${OWN_KEY}\Before"
  DeleteRegKey /ifempty HKCU "${CAPABILITIES}\FileAssociations"
  EnumRegKey $0 HKCU "${CAPABILITIES}" 0
  ${If} $0 == ""
    DeleteRegKey HKCU "${CAPABILITIES}"
    DeleteRegValue HKCU "Software\RegisteredApplications" "Quenlox"
  ${EndIf}
!macroend

; Tells the desktop that associations have changed (SHCNE_ASSOCCHANGED).
!macro TellDesktop
  System::Call 'shell32::SHChangeNotify(i 0x08000000, i 0, p 0, p 0)'
!macroend

; What the sections of the kinds say: ticked ones are associated, others taken back.
!macro ApplyAssociations
  !insertmacro EachKind MakeClass
  !insertmacro EachExtension ApplyToExtension
  !insertmacro EachKind RemoveUnselectedClass
  !insertmacro RemoveEmptyCapabilities
  !insertmacro TellDesktop
!macroend

!macro TakeBackAssociations
  !insertmacro EachExtension TakeBack
  !insertmacro EachKind RemoveClass
  !insertmacro RemoveEmptyCapabilities
  !insertmacro TellDesktop
!macroend
