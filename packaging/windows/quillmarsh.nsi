; The installer for Windows; scripts/windows/package.sh compiles it and passes VERSION, LISTS (the folder with
; the lists of what is installed and removed), ICON, PICTURE, OUTPUT, HAS_DRIVER when the driver package is
; packed with it, and SIGN, the command that signs a file, when it is to be signed.
;
;   setup.exe             installs for one user, without any rights
;   setup.exe /S          the same in silence; nothing is taken from beside the installer
;   setup.exe /S /TOOLS   the same; the maker's tools beside the installer are taken without a question
;   setup.exe /DRIVER     installs the driver and nothing else, as administrator
Unicode true
Target amd64-unicode
SetCompressor /SOLID lzma
RequestExecutionLevel user

!include FileFunc.nsh
!include LogicLib.nsh
!include MUI2.nsh
!include nsDialogs.nsh

!define UNINSTALL_KEY Software\Microsoft\Windows\CurrentVersion\Uninstall\quillmarsh
!define TEMPORARY $TEMP\QuillmarshV3TmpPath
!define LIST qmake\ControlDevList.json
!define SHIPPED_LIST qmake\ControlDevList.default.json
!define COPIED copied-tools.txt
; Windows lets only administrators write there, so what was agreed to is what is run.
!define DRIVER_FOLDER "$PROGRAMFILES64\Quillmarsh driver"

; What a maker may add, beside the installer: "FILE KIND", with 1 for what belongs to the driver.
!macro forEachTool DO
    !insertmacro ${DO} upgcmd.exe 0
    !insertmacro ${DO} upgcmdHid.exe 0
    !insertmacro ${DO} IAP_Programmer.exe 0
    !insertmacro ${DO} dpscat.exe 1
    !insertmacro ${DO} Artinchip_SoC.inf 1
    !insertmacro ${DO} amd64\libusb0.dll 1
    !insertmacro ${DO} amd64\libusbK.dll 1
    !insertmacro ${DO} amd64\WdfCoInstaller01009.dll 1
    !insertmacro ${DO} amd64\libusbK.sys 1
!macroend

; Each is 1 or 0.
Var isDriverStep
Var takesTools
; The tools that were found, line by line.
Var found
Var agreement

!ifdef SIGN
    !uninstfinalize `${SIGN} "%1"` = 0
!endif
Name Quillmarsh
OutFile ${OUTPUT}
; The program writes beside itself, so it lies where its user may write.
InstallDir $LOCALAPPDATA\Programs\quillmarsh
InstallDirRegKey HKCU ${UNINSTALL_KEY} InstallLocation
ShowInstDetails show
VIProductVersion ${VERSION}.0
VIAddVersionKey ProductName Quillmarsh
VIAddVersionKey ProductVersion ${VERSION}
VIAddVersionKey FileVersion ${VERSION}
VIAddVersionKey FileDescription "Quillmarsh setup"
VIAddVersionKey LegalCopyright "Copyright (c) 2026 The quillmarsh authors"

!define MUI_ICON ${ICON}
!define MUI_UNICON ${ICON}
!define MUI_WELCOMEFINISHPAGE_BITMAP ${PICTURE}
; These belong to the page that follows next.
!define MUI_PAGE_CUSTOMFUNCTION_PRE leaveOutInDriverStep
!define MUI_PAGE_CUSTOMFUNCTION_SHOW nameNextStep
!insertmacro MUI_PAGE_DIRECTORY
Page custom showTools leaveTools
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN $INSTDIR\quillmarsh.exe
!define MUI_FINISHPAGE_SHOWREADME
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!define MUI_FINISHPAGE_SHOWREADME_TEXT $(INSTALL_DRIVER)
!define MUI_FINISHPAGE_SHOWREADME_FUNCTION startDriverStep
!define MUI_PAGE_CUSTOMFUNCTION_PRE leaveOutInDriverStep
!define MUI_PAGE_CUSTOMFUNCTION_SHOW showFinish
!insertmacro MUI_PAGE_FINISH
!insertmacro MUI_UNPAGE_CONFIRM
!insertmacro MUI_UNPAGE_INSTFILES
!insertmacro MUI_LANGUAGE English
!insertmacro MUI_LANGUAGE SimpChinese

LangString IS_RUNNING ${LANG_ENGLISH} "Quillmarsh is running. Wait until no device is being updated, close it, and try again."
LangString IS_RUNNING ${LANG_SIMPCHINESE} "Quillmarsh 正在运行。请等待设备升级完成，关闭程序后重试。"
LangString INSTALL_DRIVER ${LANG_ENGLISH} "Install the devices' USB driver (Windows asks for an administrator)"
LangString INSTALL_DRIVER ${LANG_SIMPCHINESE} "安装设备的 USB 驱动程序（Windows 会请求管理员权限）"
LangString TOOLS_TITLE ${LANG_ENGLISH} "Files beside the installer"
LangString TOOLS_TITLE ${LANG_SIMPCHINESE} "安装程序旁边的文件"
LangString TOOLS_SUBTITLE ${LANG_ENGLISH} "Quillmarsh would run them."
LangString TOOLS_SUBTITLE ${LANG_SIMPCHINESE} "Quillmarsh 将运行这些文件。"
LangString TOOLS_QUESTION ${LANG_ENGLISH} "These files lie in $EXEDIR. Use them only if you know that they come from the maker of your devices: anybody could have put them there."
LangString TOOLS_QUESTION ${LANG_SIMPCHINESE} "这些文件位于 $EXEDIR。任何人都可能将文件放在那里，请仅在确认它们来自设备制造商时使用。"
LangString TOOLS_AGREE ${LANG_ENGLISH} "Use these files"
LangString TOOLS_AGREE ${LANG_SIMPCHINESE} "使用这些文件"
LangString DRIVER_AGREE ${LANG_ENGLISH} "Install the driver from these files"
LangString DRIVER_AGREE ${LANG_SIMPCHINESE} "使用这些文件安装驱动程序"
LangString NO_ADMINISTRATOR ${LANG_ENGLISH} "Only an administrator can install the driver."
LangString NO_ADMINISTRATOR ${LANG_SIMPCHINESE} "只有管理员才能安装驱动程序。"
LangString NO_DRIVER ${LANG_ENGLISH} "There is no driver package in or beside the installer."
LangString NO_DRIVER ${LANG_SIMPCHINESE} "安装程序中或其旁边没有驱动程序包。"

; Its file cannot be opened for writing while it runs; in silence that ends the setup with 2.
!macro refuseWhileRunning PROGRAM
    ${Do}
        ${IfNot} ${FileExists} $INSTDIR\${PROGRAM}
            ${Break}
        ${EndIf}
        ClearErrors
        FileOpen $0 $INSTDIR\${PROGRAM} a
        ${IfNot} ${Errors}
            FileClose $0
            ${Break}
        ${EndIf}
        ${If} ${Cmd} `MessageBox MB_RETRYCANCEL|MB_ICONEXCLAMATION $(IS_RUNNING) /SD IDCANCEL IDCANCEL`
            SetErrorLevel 2
            Quit
        ${EndIf}
    ${Loop}
!macroend

; Sets $0 to 1 when the user has a control list other than the one that was installed.
!macro defineIsListOwn un
Function ${un}isListOwn
    StrCpy $0 0
    ${IfNot} ${FileExists} $INSTDIR\${LIST}
        Return
    ${EndIf}
    StrCpy $0 1
    ${IfNot} ${FileExists} $INSTDIR\${SHIPPED_LIST}
        Return
    ${EndIf}
    FileOpen $1 $INSTDIR\${LIST} r
    FileOpen $2 $INSTDIR\${SHIPPED_LIST} r
    ${Do}
        FileRead $1 $3
        FileRead $2 $4
        ${If} $3 S!= $4
            ${Break}
        ${EndIf}
        ${If} $3 == ""
            StrCpy $0 0
            ${Break}
        ${EndIf}
    ${Loop}
    FileClose $1
    FileClose $2
FunctionEnd
!macroend
!insertmacro defineIsListOwn ""
!insertmacro defineIsListOwn un.

; Adds it to $found when it lies beside the installer and is wanted in this step.
!macro findTool NAME IS_DRIVER
    ${If} ${FileExists} $EXEDIR\${NAME}
        ${If} $isDriverStep <= ${IS_DRIVER}
            StrCpy $found "$found${NAME}$\r$\n"
        ${EndIf}
    ${EndIf}
!macroend

; What was taken is written down, so that the uninstaller knows what is not the user's own.
!macro copyTool NAME IS_DRIVER
    ${If} ${FileExists} $EXEDIR\${NAME}
        DetailPrint ${NAME}
        ClearErrors
        CopyFiles /SILENT $EXEDIR\${NAME} $INSTDIR\${NAME}
        ${IfNot} ${Errors}
            FileWrite $0 "${NAME}$\r$\n"
        ${EndIf}
    ${EndIf}
!macroend

!macro copyToDriverFolder NAME IS_DRIVER
    !if ${IS_DRIVER} == 1
        ${If} ${FileExists} $EXEDIR\${NAME}
            CopyFiles /SILENT $EXEDIR\${NAME} "${DRIVER_FOLDER}\${NAME}"
        ${EndIf}
    !endif
!macroend

Function .onInit
    StrCpy $isDriverStep 0
    StrCpy $takesTools 0
    ${GetParameters} $0
    ClearErrors
    ${GetOptions} $0 /DRIVER $1
    ${IfNot} ${Errors}
        StrCpy $isDriverStep 1
    ${EndIf}
    ClearErrors
    ${GetOptions} $0 /TOOLS $1
    ${IfNot} ${Errors}
    ${AndIf} ${Silent}
        StrCpy $takesTools 1
    ${EndIf}
    ${If} $isDriverStep == 1
        UserInfo::GetAccountType
        Pop $0
        ${If} $0 != Admin
            MessageBox MB_ICONSTOP $(NO_ADMINISTRATOR) /SD IDOK
            SetErrorLevel 3
            Quit
        ${EndIf}
    ${EndIf}
FunctionEnd

Function leaveOutInDriverStep
    ${If} $isDriverStep == 1
        Abort
    ${EndIf}
FunctionEnd

Function findTools
    StrCpy $found ""
    ${If} $EXEDIR != $INSTDIR
        !insertmacro forEachTool findTool
    ${EndIf}
FunctionEnd

; Where nothing lies beside the installer, no page comes between this one and the installation.
Function nameNextStep
    Call findTools
    ${If} $found == ""
        GetDlgItem $0 $HWNDPARENT 1
        SendMessage $0 ${WM_SETTEXT} 0 STR:$(^InstallBtn)
    ${EndIf}
FunctionEnd

; Shows what lies beside the installer. Nothing of it is used before the user has agreed.
Function showTools
    Call findTools
    !ifdef HAS_DRIVER
        ${If} $isDriverStep == 1
            Abort
        ${EndIf}
    !endif
    ${If} $found == ""
        Abort
    ${EndIf}
    ${If} $isDriverStep == 1
        ; Copied first: afterwards nobody but an administrator can exchange what the user agrees to.
        Call fillDriverFolder
    ${EndIf}
    !insertmacro MUI_HEADER_TEXT $(TOOLS_TITLE) $(TOOLS_SUBTITLE)
    nsDialogs::Create 1018
    Pop $0
    ${NSD_CreateLabel} 0 0 100% 26u $(TOOLS_QUESTION)
    Pop $0
    nsDialogs::CreateControl EDIT \
        ${DEFAULT_STYLES}|${WS_VSCROLL}|${ES_MULTILINE}|${ES_READONLY} ${WS_EX_CLIENTEDGE} 0 28u 100% 84u $found
    Pop $0
    ${If} $isDriverStep == 1
        ${NSD_CreateCheckbox} 0 116u 100% 12u $(DRIVER_AGREE)
        Pop $agreement
        GetDlgItem $0 $HWNDPARENT 1
        EnableWindow $0 0
        ${NSD_OnClick} $agreement agreeToDriver
    ${Else}
        ${NSD_CreateCheckbox} 0 116u 100% 12u $(TOOLS_AGREE)
        Pop $agreement
        ${If} $takesTools == 1
            ${NSD_Check} $agreement
        ${EndIf}
    ${EndIf}
    nsDialogs::Show
FunctionEnd

Function agreeToDriver
    Pop $0
    ${NSD_GetState} $agreement $1
    GetDlgItem $0 $HWNDPARENT 1
    EnableWindow $0 $1
FunctionEnd

Function leaveTools
    ${NSD_GetState} $agreement $takesTools
FunctionEnd

Function fillDriverFolder
    RMDir /r "${DRIVER_FOLDER}"
    CreateDirectory "${DRIVER_FOLDER}\amd64"
    !insertmacro forEachTool copyToDriverFolder
FunctionEnd

; Installs from the folder that only administrators may write, and leaves nothing there.
Function installDriver
    ; What was done stays in sight: no page follows that would say how it went.
    SetAutoClose false
    !ifdef HAS_DRIVER
        RMDir /r "${DRIVER_FOLDER}"
        CreateDirectory "${DRIVER_FOLDER}\amd64"
    !else
        ${If} ${Silent}
        ${AndIf} $takesTools == 1
            Call fillDriverFolder
        ${EndIf}
        ${If} $takesTools != 1
        ${OrIfNot} ${FileExists} "${DRIVER_FOLDER}\Artinchip_SoC.inf"
            MessageBox MB_ICONSTOP $(NO_DRIVER) /SD IDOK
            SetErrorLevel 3
            Return
        ${EndIf}
    !endif
    !include ${LISTS}\driver.nsh
    ; The working folder of the driver's own tool: nobody else may write there.
    SetOutPath $SYSDIR
    nsExec::ExecToLog '"${DRIVER_FOLDER}\quillmarsh-driver.exe"'
    Pop $0
    RMDir /r "${DRIVER_FOLDER}"
FunctionEnd

Function .onGUIEnd
    ${If} $isDriverStep == 1
        RMDir /r "${DRIVER_FOLDER}"
    ${EndIf}
FunctionEnd

Section
    ${If} $isDriverStep == 1
        Call installDriver
        Return
    ${EndIf}
    !insertmacro refuseWhileRunning quillmarsh.exe
    !insertmacro refuseWhileRunning quillmarsh-cli.exe
    Call isListOwn
    StrCpy $5 $0
    !include ${LISTS}\install.nsh
    ${If} $5 == 0
        CopyFiles /SILENT $INSTDIR\${SHIPPED_LIST} $INSTDIR\${LIST}
    ${EndIf}

    CreateDirectory $INSTDIR\amd64
    ${If} $takesTools == 1
    ${AndIf} $EXEDIR != $INSTDIR
        FileOpen $0 $INSTDIR\${COPIED} a
        FileSeek $0 0 END
        !insertmacro forEachTool copyTool
        FileClose $0
    ${EndIf}

    ; The working folder of what is started through it, and so the place of the logs.
    SetOutPath $INSTDIR
    CreateShortcut $SMPROGRAMS\Quillmarsh.lnk $INSTDIR\quillmarsh.exe
    WriteUninstaller $INSTDIR\uninstall.exe
    WriteRegStr HKCU ${UNINSTALL_KEY} DisplayName Quillmarsh
    WriteRegStr HKCU ${UNINSTALL_KEY} DisplayVersion ${VERSION}
    WriteRegStr HKCU ${UNINSTALL_KEY} Publisher "The quillmarsh authors"
    WriteRegStr HKCU ${UNINSTALL_KEY} DisplayIcon $INSTDIR\quillmarsh.exe
    WriteRegStr HKCU ${UNINSTALL_KEY} InstallLocation $INSTDIR
    WriteRegStr HKCU ${UNINSTALL_KEY} UninstallString '"$INSTDIR\uninstall.exe"'
    WriteRegStr HKCU ${UNINSTALL_KEY} QuietUninstallString '"$INSTDIR\uninstall.exe" /S'
    WriteRegDWORD HKCU ${UNINSTALL_KEY} NoModify 1
    WriteRegDWORD HKCU ${UNINSTALL_KEY} NoRepair 1
    ${GetSize} $INSTDIR /S=0K $0 $1 $2
    WriteRegDWORD HKCU ${UNINSTALL_KEY} EstimatedSize $0
SectionEnd

; Elevation is never what happens when the user changes nothing: the driver is offered, and not ticked.
Function showFinish
    !ifndef HAS_DRIVER
        ${If} $takesTools != 1
        ${OrIfNot} ${FileExists} $EXEDIR\Artinchip_SoC.inf
            ShowWindow $mui.FinishPage.ShowReadme ${SW_HIDE}
        ${EndIf}
    !endif
FunctionEnd

Function startDriverStep
    ExecShell runas $EXEPATH /DRIVER
FunctionEnd

; Removes the file when the line in $2 names it. Whoever may write the list could otherwise have any file removed.
!macro removeIfNamed NAME IS_DRIVER
    ${If} $2 == ${NAME}
        Delete $INSTDIR\${NAME}
    ${EndIf}
!macroend

Function un.removeCopiedTools
    ClearErrors
    FileOpen $1 $INSTDIR\${COPIED} r
    ${IfNot} ${Errors}
        ${Do}
            ClearErrors
            FileRead $1 $2
            ${If} ${Errors}
                ${Break}
            ${EndIf}
            StrCpy $2 $2 -2
            !insertmacro forEachTool removeIfNamed
        ${Loop}
        FileClose $1
    ${EndIf}
    Delete $INSTDIR\${COPIED}
FunctionEnd

; The driver belongs to the devices and stays. Where there was none, the program's check at its start may
; have left its service behind, which then is of no use to anybody. Takes rights that a user may lack.
Function un.removeServiceWithoutDriver
    StrCpy $0 $SYSDIR\drivers\libusbK.sys
    ${If} ${FileExists} $0
        Return
    ${EndIf}
    ReadRegStr $1 HKLM SYSTEM\CurrentControlSet\Services\libusbK ImagePath
    ${If} $1 == $0
    ${OrIf} $1 == \??\$0
        nsExec::Exec '"$SYSDIR\sc.exe" delete libusbK'
        Pop $0
    ${EndIf}
FunctionEnd

; Logs, a control list of the user's own, and whatever else lies in the folder stay.
Section Uninstall
    !insertmacro refuseWhileRunning quillmarsh.exe
    !insertmacro refuseWhileRunning quillmarsh-cli.exe
    Call un.isListOwn
    ${If} $0 == 0
        Delete $INSTDIR\${LIST}
    ${EndIf}
    Call un.removeCopiedTools
    Call un.removeServiceWithoutDriver
    ; What the program makes anew at need.
    Delete $INSTDIR\qmake\dev.jn
    Delete $INSTDIR\Artinchip_SoC.cat
    Delete ${TEMPORARY}\tmp\dev.img*
    Delete ${TEMPORARY}\tmp\dev.bin*
    Delete ${TEMPORARY}.lock
    RMDir ${TEMPORARY}\qmake
    RMDir ${TEMPORARY}\tmp
    RMDir ${TEMPORARY}
    !include ${LISTS}\uninstall.nsh
    Delete $SMPROGRAMS\Quillmarsh.lnk
    Delete $INSTDIR\uninstall.exe
    RMDir $INSTDIR\amd64
    RMDir $INSTDIR
    DeleteRegKey HKCU ${UNINSTALL_KEY}
SectionEnd
