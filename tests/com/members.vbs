' members.vbs FOLDER TEXT: calls every member of the engine late-bound and checks results, variables
' passed by reference and error codes. TEXT is a Cyrillic text: this file itself is plain Latin.
Option Explicit

Dim engine, folder, cyrillic, checks, failures
folder = WScript.Arguments(0)
cyrillic = WScript.Arguments(1)
Set engine = CreateObject("Orv.Engine")

Sub Check(what, actual, expected)
  checks = checks + 1
  If TypeName(actual) = TypeName(expected) Then
    If actual = expected Then Exit Sub
  End If
  failures = failures + 1
  WScript.Echo what & ": " & TypeName(actual) & " " & actual & " instead of " & TypeName(expected) & " " & expected
End Sub

Sub CheckCode(what, expected)
  Check what & ", error code", engine.ErrorCode, CInt(expected)
End Sub

Dim path, inner, record, field, count, text, isMtx, frml, title
path = """" & folder & "\vb.orv" & """"
inner = path & "/[2,1]"

' Life
engine.UnloadServer
engine.gt
CheckCode "gt", 0
Check "TypeName", TypeName(engine.ErrorCode), "Integer"

' Files, fields and records; numbers come as texts, doubles and longs
engine.CmdNewOrvDB path, cyrillic
CheckCode "CmdNewOrvDB", 0
Check "IsORVorDBF", engine.IsORVorDBF(path), CInt(1)
field = 1
engine.CmdAddFld path, "3", field
CheckCode "CmdAddFld", 0
Check "Fields", engine.Fields(path), CLng(3)
record = 1.0
engine.CmdAddRecord path, 10, record
CheckCode "CmdAddRecord", 0
Check "Records", engine.Records(path), CLng(10)
engine.CmdDelFld path, 3
CheckCode "CmdDelFld", 0
Check "Fields after CmdDelFld", engine.Fields(path), CLng(2)
Check "record stays a double", TypeName(record), "Double"

' Titles
Check "GetTitle", engine.GetTitle(path), cyrillic
engine.SetTitle "second", path
Check "GetTitle after SetTitle", engine.GetTitle(path), "second"

' Cells
engine.SetCellValue cyrillic, path, 1, 1
CheckCode "SetCellValue", 0
isMtx = True
frml = False
Check "GetCellValue", engine.GetCellValue(path, 1, 1, isMtx, frml), cyrillic
Check "isMtx", isMtx, False
engine.SetCellValue "", path, 1, 1
Check "empty text", engine.GetCellValue(path, 1, 1), ""
text = String(100000, "x")
engine.SetCellValue text, path, 1, 1
Check "100,000 characters", engine.GetCellValue(path, 1, 1) = text, True
engine.SetCellValue 42, path, 3, 1
Check "a number as text", engine.GetCellValue(path, 3, 1), "42"
Check "record -1", engine.GetCellValue(path, -1, 1), "<Error=20>"
CheckCode "record -1", 20
engine.SetCellValue "x", path, 99, 1
CheckCode "a record that does not exist", 9

' Nested matrices; an empty title takes the cell's text and comes back
engine.SetCellValue "nested", path, 2, 1
title = ""
engine.PutMatrix path, 2, 1, title
CheckCode "PutMatrix", 0
Check "PutMatrix gives the title back", title, "nested"
Check "GetTitle of the nested matrix", engine.GetTitle(inner), "nested"
isMtx = Empty
text = engine.GetCellValue(path, 2, 1, isMtx)
Check "isMtx of the nested matrix", isMtx, True
Check "CopyCell does nothing", TypeName(engine.CopyCell(path, 1, 1, path, 2, 2)), "Empty"
CheckCode "CopyCell", 0

' Types
engine.SetTypeValue path, 3, 2, "type", "integer"
CheckCode "SetTypeValue", 0
Check "GetTypeValue", engine.GetTypeValue(path, 3, 2, "type"), "integer"
text = engine.GetTypeValue(path, 3, 2, "absent", False)
CheckCode "GetTypeValue of an absent property", 4
Check "GetCellDataType", engine.GetCellDataType(path, 3, 2), CInt(1)
Check "GetID", TypeName(engine.GetID(path, 3, 2)), "Integer"
Check "ReBit", TypeName(engine.ReBit(path, 3, 1, 4)), "Empty"
CheckCode "ReBit", 0
text = engine.ReBit(path, 3, 1, 3)
CheckCode "ReBit with a wrong form", 26
engine.CloseAll
Check "dBASEFldSize", TypeName(engine.dBASEFldSize("""" & folder & "\absent.dbf" & """", 1)), "Empty"

' Searches
engine.SetCellValue "alpha", path, 4, 2
engine.SetCellValue "Beta", path, 5, 2
field = 2
Check "MtxFindFirst", engine.MtxFindFirst(path, 1, field, "beta", 0, False, 0, False), CLng(5)
Check "MtxFindFirst, four arguments", engine.MtxFindFirst(path, 1, 2, "alpha"), CLng(4)
Check "MtxFindFirst in vain", engine.MtxFindFirst(path, 1, 2, "beta", 0, False, 0, True), CLng(-1)
Check "MtxFindMin", TypeName(engine.MtxFindMin(path, 2)), "Long"
Check "MtxFindMax", engine.MtxFindMax(path, 2), CLng(4)

' Commands
Check "ExecCmd", engine.ExecCmd("=1+2;", path, 1, 1), "3"
Check "ExecCmd without a context", engine.ExecCmd("=2*3;"), "6"
Check "Cmd", engine.Cmd("anything", 1), ""

' Styles: five variables are filled
Dim freeSize, cellSize, fixedType, isUnique, dataType
engine.GetFldStyle path, 1, freeSize, cellSize, fixedType, isUnique, dataType
CheckCode "GetFldStyle", 0
Check "FreeSize", freeSize, CInt(0)
Check "FixedType", TypeName(fixedType), "Boolean"

' A conversion: no display here, so its dialog runs unattended
engine.SetCellValue "", path, 1, 1
engine.SetFldStyle path, 2, 11, 1, False, False, 10
CheckCode "SetFldStyle", 0
engine.GetFldStyle path, 2, freeSize, cellSize, fixedType, isUnique, dataType
Check "FreeSize after the conversion", freeSize, CInt(11)
Check "a converted cell", engine.GetCellValue(path, 5, 2), "Beta"
engine.SortData path, 2
CheckCode "SortData", 0

' The host's array, fields by records, with the bounds that the host chose
Dim m(2, 5), first, last
first = 4
last = 5
engine.ValueMatrix m, path, first, last, False
CheckCode "ValueMatrix", 0
Check "element 2,4", m(2, 4), "alpha"
Check "element 2,5", m(2, 5), "Beta"
Check "first stays", first, 4
engine.ValueMatrix m, path, 1, 3
Check "element 1,3", m(1, 3), "42"

' A new top matrix; export
engine.InsFirstLvlMtx path
CheckCode "InsFirstLvlMtx", 0
Check "one record on top", engine.Records(path), CLng(1)
Check "the former top", engine.GetTitle(path & "/[1,1]"), "second"
engine.SaveMtxAs path & "/[1,1]", folder & "\vb.txt", False, 2
CheckCode "SaveMtxAs", 0
Check "the exported file", CreateObject("Scripting.FileSystemObject").FileExists(folder & "\vb.txt"), True
engine.CloseAll
CheckCode "CloseAll", 0

' Calls that are not well formed
On Error Resume Next
engine.Records
Check "too few arguments", Err.Number <> 0, True
Err.Clear
engine.NoSuchMember path
Check "an unknown member", Err.Number, CLng(438)
Err.Clear
engine.GetCellValue path, "abc", 1
Check "a text that is no number", Err.Number, CLng(13)
Err.Clear
engine.GetCellValue path, 1, 99999
Check "a number that does not fit", Err.Number, CLng(6)
Err.Clear
On Error Goto 0

If failures = 0 Then WScript.Echo "all " & checks & " checks passed"
