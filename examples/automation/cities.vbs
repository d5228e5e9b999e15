' cities.vbs [FOLDER]: a small host of the engine. Creates a table, fills it, filters it, computes
' with it and exports it.
'
'     cscript //nologo cities.vbs C:\Temp
Option Explicit

Dim engine, folder, path
folder = "."
If WScript.Arguments.Count > 0 Then folder = WScript.Arguments(0)
path = """" & folder & "\cities.orv"""
Set engine = CreateObject("Orv.Engine")

' Every call leaves a code; 0 is success.
Sub Demand(action)
  If engine.ErrorCode <> 0 Then
    WScript.Echo action & ": error " & engine.ErrorCode
    WScript.Quit 1
  End If
End Sub

' A file with one table of three named fields.
engine.CmdNewOrvDB path, "Cities"
Demand "creating the file"
engine.CmdAddFld path, 3, 1
engine.SetCellValue "City", path, 0, 1
engine.SetCellValue "Country", path, 0, 2
engine.SetCellValue "Population", path, 0, 3
Demand "naming the fields"

' Records. Numbers may be passed as they are: they are stored as texts.
Sub AddCity(city, country, population)
  Dim record
  record = engine.Records(path) + 1
  engine.CmdAddRecord path, 1, record
  engine.SetCellValue city, path, record, 1
  engine.SetCellValue country, path, record, 2
  engine.SetCellValue population, path, record, 3
  Demand "adding " & city
End Sub
AddCity "Tver", "Russia", 416000
AddCity "Oslo", "Norway", 709000
AddCity "Omsk", "Russia", 1125000
AddCity "Bergen", "Norway", 286000
WScript.Echo engine.GetTitle(path) & ": " & engine.Records(path) & " records, " & engine.Fields(path) & " fields"

' A view: a path that ends in a condition. Its records have numbers of their own.
Dim view, record
view = path & "/f(2)=""Russia"""
WScript.Echo "In Russia:"
For record = 1 To engine.Records(view)
  WScript.Echo "  " & engine.GetCellValue(view, record, 1) & " " & engine.GetCellValue(view, record, 3)
Next

' The command language computes where the data is. A cell's type tells that it holds a number.
Dim found
found = engine.MtxFindFirst(path, 1, 1, "oslo")
WScript.Echo "Oslo is record " & found
engine.SetTypeValue path, found, 3, "type", "integer"
Demand "setting a type"
WScript.Echo "Twice its population: " & engine.ExecCmd("=cell(rec,3)*2;", path, found, 1)

' A whole range at once, into an array that counts as the table does: fields by records.
Dim cells(3, 4), last, total
last = 4
engine.ValueMatrix cells, path, 1, last, False
Demand "reading the table"
For record = 1 To last
  total = total + CLng(cells(3, record))
Next
WScript.Echo "Total population: " & total

' Export as text. With a person in front, a dialog asks for the separators.
engine.SaveMtxAs path, folder & "\cities.txt", False, 2
Demand "exporting"
engine.CloseAll

' What the export has written.
Dim lines, line
Set lines = CreateObject("Scripting.FileSystemObject").OpenTextFile(folder & "\cities.txt")
Do Until lines.AtEndOfStream
  line = lines.ReadLine
  WScript.Echo Replace(line, vbTab, " | ")
Loop
lines.Close
