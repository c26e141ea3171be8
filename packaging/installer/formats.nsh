; Made by tools/media_formats.py from the program's table of formats.
!macro EachKind DO
  !insertmacro ${DO} mpeg
  !insertmacro ${DO} rmp
  !insertmacro ${DO} wave
  !insertmacro ${DO} midi
  !insertmacro ${DO} cda
  !insertmacro ${DO} wma
!macroend

!macro EachExtension DO
  !insertmacro ${DO} mp1 mpeg
  !insertmacro ${DO} mp2 mpeg
  !insertmacro ${DO} mp3 mpeg
  !insertmacro ${DO} rmp rmp
  !insertmacro ${DO} wav wave
  !insertmacro ${DO} mid midi
  !insertmacro ${DO} rmi midi
  !insertmacro ${DO} cda cda
  !insertmacro ${DO} wma wma
!macroend

!insertmacro Text Kind_mpeg "MPEG audio (mp1, mp2, mp3)" "MPEGオーディオ (mp1, mp2, mp3)"
!insertmacro Text Kind_rmp "RMP audio (rmp)" "RMPオーディオ (rmp)"
!insertmacro Text Kind_wave "WAVE sound (wav)" "WAVEサウンド (wav)"
!insertmacro Text Kind_midi "MIDI sequence (mid, rmi)" "MIDIシーケンス (mid, rmi)"
!insertmacro Text Kind_cda "CD audio track (cda)" "CDオーディオトラック (cda)"
!insertmacro Text Kind_wma "Windows Media audio (wma)" "Windows Mediaオーディオ (wma)"
