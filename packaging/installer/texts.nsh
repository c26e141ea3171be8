; The installer's own texts, in its two languages.
!macro Text NAME ENGLISH JAPANESE
  LangString ${NAME} ${LANG_ENGLISH} "${ENGLISH}"
  LangString ${NAME} ${LANG_JAPANESE} "${JAPANESE}"
!macroend

!insertmacro Text LicenceTop "Quenlox is free software." "Quenloxはフリーソフトウェアです。"
!insertmacro Text LicenceBottom "You may use, copy and change it under the terms above. Libraries it contains: see the folder licences." \
  "上記の条件で自由に使用・複製・変更できます。含まれるライブラリについてはlicencesフォルダをご覧ください。"
!insertmacro Text Running "Quenlox is running, or its file is in use. Close it and try again." \
  "Quenloxが実行中か、ファイルが使用中です。終了してから、もう一度お試しください。"
!insertmacro Text OldVersionStays "The version that is installed could not be removed." "インストールされているバージョンを削除できませんでした。"
!insertmacro Text TooOld "Quenlox needs Windows 10 version 1703 (build 15063) or later, 64-bit." \
  "Quenloxには64ビット版のWindows 10 バージョン1703（ビルド15063）以降が必要です。"

!insertmacro Text SectionProgram "Quenlox" "Quenlox"
!insertmacro Text SectionStartMenu "Start menu entry" "スタートメニューに登録"
!insertmacro Text SectionDesktop "Desktop shortcut" "デスクトップにショートカットを作成"
!insertmacro Text SectionAssociations "File associations" "ファイルの関連付け"
!insertmacro Text SectionUserFiles "Settings, play lists, crash notes" "設定・プレイリスト・異常終了の記録"
!insertmacro Text AboutProgram "Skinnable sound player" "スキンを着せ替えられるサウンドプレーヤー"
!insertmacro Text AboutStartMenu "Puts Quenlox into the start menu." "スタートメニューにQuenloxを登録します。"
!insertmacro Text AboutDesktop "Puts a shortcut on the desktop." "デスクトップにショートカットを作成します。"
!insertmacro Text AboutAssociations "Opens these files with Quenlox. Taking the tick away restores what was there before." \
  "このファイルをQuenloxで開くようにします。チェックを外すと元に戻ります。"
!insertmacro Text AboutUnProgram "Removes the program. Skins of your own stay." "プログラムを削除します。自分で追加したスキンは残ります。"
!insertmacro Text AboutUserFiles "Also removes your settings and play lists (Quenlox.ini, Quenlox.m3u) and what crashes have left." \
  "設定とプレイリスト（Quenlox.ini、Quenlox.m3u）、異常終了の記録も削除します。"
