; The installer for Windows. scripts/windows/package.sh compiles it and defines VERSION, LISTS (the folder with the
; lists of the installed and removed files), ICON, PICTURE, OUTPUT, HAS_DRIVER if the installer contains the driver
; package, and SIGN, the command that signs a file, if the uninstaller must be signed.
;
;   setup.exe             installs for one user, without administrator rights
;   setup.exe /S          installs silently and does not copy the maker's tools from beside the installer
;   setup.exe /S /TOOLS   installs silently and copies the maker's tools without asking
;   setup.exe /DRIVER     installs only the driver, as administrator
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
!define COPIED_TOOLS copied-tools.txt
; Only administrators may write there, so nobody can replace the files after the user has agreed to them.
!define DRIVER_FOLDER "$PROGRAMFILES64\Quillmarsh driver"

; The files that a maker may put beside the installer, each with 1 if it belongs to the driver and 0 otherwise.
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

; Both are 1 or 0.
Var isDriverStep
Var takesTools
; The names of the tools that were found, one on each line.
Var found
Var agreement

!ifdef SIGN
    !uninstfinalize `${SIGN} "%1"` = 0
!endif
Name Quillmarsh
OutFile ${OUTPUT}
; The program writes beside itself, so it is installed where its user may write.
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
; These definitions apply to the next page.
!define MUI_PAGE_CUSTOMFUNCTION_PRE skipInDriverStep
!define MUI_PAGE_CUSTOMFUNCTION_SHOW labelNextButton
!insertmacro MUI_PAGE_DIRECTORY
Page custom showTools storeAgreement
!insertmacro MUI_PAGE_INSTFILES
!define MUI_FINISHPAGE_RUN $INSTDIR\quillmarsh.exe
!define MUI_FINISHPAGE_SHOWREADME
!define MUI_FINISHPAGE_SHOWREADME_NOTCHECKED
!define MUI_FINISHPAGE_SHOWREADME_TEXT $(INSTALL_DRIVER)
!define MUI_FINISHPAGE_SHOWREADME_FUNCTION startDriverStep
!define MUI_PAGE_CUSTOMFUNCTION_PRE skipInDriverStep
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

; Asks the user to close the program while it is running: its file cannot be opened for writing then. A silent setup
; ends with code 2 instead.
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

; Sets $0 to 1 if the user has changed the installed control list, and to 0 otherwise.
!macro defineIsListChanged un
Function ${un}isListChanged
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
!insertmacro defineIsListChanged ""
!insertmacro defineIsListChanged un.

; Adds the tool to $found if it is beside the installer and belongs to this step.
!macro findTool NAME IS_DRIVER
    ${If} ${FileExists} $EXEDIR\${NAME}
        ${If} $isDriverStep <= ${IS_DRIVER}
            StrCpy $found "$found${NAME}$\r$\n"
        ${EndIf}
    ${EndIf}
!macroend

; Copies the tool and records its name, so that the uninstaller removes only the files that the installer has copied.
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

Function skipInDriverStep
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

; If there are no tools beside the installer, the next step is the installation: label the button accordingly.
Function labelNextButton
    Call findTools
    ${If} $found == ""
        GetDlgItem $0 $HWNDPARENT 1
        SendMessage $0 ${WM_SETTEXT} 0 STR:$(^InstallBtn)
    ${EndIf}
FunctionEnd

; Shows the tools beside the installer. None of them is used unless the user agrees.
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
        ; Copy them before asking: only an administrator can replace the copies after the user has agreed.
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
        ${NSD_OnClick} $agreement enableNextIfAgreed
    ${Else}
        ${NSD_CreateCheckbox} 0 116u 100% 12u $(TOOLS_AGREE)
        Pop $agreement
        ${If} $takesTools == 1
            ${NSD_Check} $agreement
        ${EndIf}
    ${EndIf}
    nsDialogs::Show
FunctionEnd

Function enableNextIfAgreed
    Pop $0
    ${NSD_GetState} $agreement $1
    GetDlgItem $0 $HWNDPARENT 1
    EnableWindow $0 $1
FunctionEnd

Function storeAgreement
    ${NSD_GetState} $agreement $takesTools
FunctionEnd

Function fillDriverFolder
    RMDir /r "${DRIVER_FOLDER}"
    CreateDirectory "${DRIVER_FOLDER}\amd64"
    !insertmacro forEachTool copyToDriverFolder
FunctionEnd

; Installs the driver from the folder in which only administrators may write, and removes the folder.
Function installDriver
    ; Keep the details visible: no other page shows the result.
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
    ; The working folder of the driver's tool must be one in which only administrators may write.
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
    Call isListChanged
    StrCpy $5 $0
    !include ${LISTS}\install.nsh
    ${If} $5 == 0
        CopyFiles /SILENT $INSTDIR\${SHIPPED_LIST} $INSTDIR\${LIST}
    ${EndIf}

    CreateDirectory $INSTDIR\amd64
    ${If} $takesTools == 1
    ${AndIf} $EXEDIR != $INSTDIR
        FileOpen $0 $INSTDIR\${COPIED_TOOLS} a
        FileSeek $0 0 END
        !insertmacro forEachTool copyTool
        FileClose $0
    ${EndIf}

    ; The shortcut starts the program in this folder, which is where it writes its logs.
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

; Offers to install the driver if there is a driver package. Intentional: the box is not ticked, so that the installer
; asks for elevation only if the user wants it.
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

; Removes the tool if the line in $2 is its name. Other names are ignored, so that a changed list cannot remove other
; files.
!macro removeIfNamed NAME IS_DRIVER
    ${If} $2 == ${NAME}
        Delete $INSTDIR\${NAME}
    ${EndIf}
!macroend

Function un.removeCopiedTools
    ClearErrors
    FileOpen $1 $INSTDIR\${COPIED_TOOLS} r
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
    Delete $INSTDIR\${COPIED_TOOLS}
FunctionEnd

; Removes the service libusbK if there is no driver: the check at the program's start may have created it, and it is
; useless then. Fails without administrator rights. An installed driver stays, because it belongs to the devices.
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

; Logs, a changed control list and other files of the user stay in the folder.
Section Uninstall
    !insertmacro refuseWhileRunning quillmarsh.exe
    !insertmacro refuseWhileRunning quillmarsh-cli.exe
    Call un.isListChanged
    ${If} $0 == 0
        Delete $INSTDIR\${LIST}
    ${EndIf}
    Call un.removeCopiedTools
    Call un.removeServiceWithoutDriver
    ; Remove the files that the program makes while it runs.
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
