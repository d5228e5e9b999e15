// members.js FOLDER TEXT: calls every member of the engine late-bound. JScript passes values, so
// objects with a property `value` take what a call gives back.
var folder = WScript.Arguments(0);
var cyrillic = WScript.Arguments(1);
var engine = new ActiveXObject("Orv.Engine.1");
var checks = 0;
var failures = 0;

function check(what, actual, expected) {
  ++checks;
  if (actual === expected) return;
  ++failures;
  WScript.Echo(what + ": " + typeof actual + " " + escape(String(actual)) + " instead of " +
               typeof expected + " " + escape(String(expected)));
}
function checkCode(what, expected) { check(what + ", error code", engine.ErrorCode(), expected); }
function checkRefused(what, call) {
  var refused = false;
  try { call(); } catch (failure) { refused = true; }
  check(what + " is refused", refused, true);
}
function repeat(text, times) {
  var all = "";
  while (times > 0) {
    if (times & 1) all += text;
    text += text;
    times >>= 1;
  }
  return all;
}

// The 256 characters of the code page, from the characters of the second half in order.
var upper = "\u0402\u0403\u201A\u0453\u201E\u2026\u2020\u2021\u20AC\u2030\u0409\u2039\u040A\u040C\u040B\u040F" +
            "\u0452\u2018\u2019\u201C\u201D\u2022\u2013\u2014\u0098\u2122\u0459\u203A\u045A\u045C\u045B\u045F" +
            "\u00A0\u040E\u045E\u0408\u00A4\u0490\u00A6\u00A7\u0401\u00A9\u0404\u00AB\u00AC\u00AD\u00AE\u0407" +
            "\u00B0\u00B1\u0406\u0456\u0491\u00B5\u00B6\u00B7\u0451\u2116\u0454\u00BB\u0458\u0405\u0455\u0457";
function allBytes() {
  var text = "";
  for (var b = 0; b < 128; ++b) text += String.fromCharCode(b);
  text += upper;
  for (var c = 0x410; c <= 0x44F; ++c) text += String.fromCharCode(c);
  return text;
}

function testLife() {
  check("UnloadServer", engine.UnloadServer(), undefined);
  check("gt", engine.gt(), undefined);
  check("ErrorCode", engine.ErrorCode(), 0);
}

function testCells(path) {
  engine.CmdNewOrvDB(path, cyrillic);
  checkCode("CmdNewOrvDB", 0);
  check("IsORVorDBF", engine.IsORVorDBF(path), 1);
  check("GetTitle", engine.GetTitle(path), cyrillic);
  engine.SetTitle("\u0401\u0436", path);
  check("SetTitle", engine.GetTitle(path), "\u0401\u0436");
  engine.CmdAddFld(path, 3, 1);
  engine.CmdDelFld(path, 3);
  check("Fields", engine.Fields(path), 2);
  engine.CmdAddRecord(path, 8, 1);
  check("Records", engine.Records(path), 8);
  var texts = [cyrillic, "", repeat("\u044F", 100000), allBytes(), "\u4E2D"];
  var back = [cyrillic, "", texts[2], texts[3], "?"];
  for (var i = 0; i < texts.length; ++i) {
    engine.SetCellValue(texts[i], path, i + 1, 1);
    checkCode("SetCellValue " + i, 0);
    var isMtx = { value: null };
    check("GetCellValue " + i, engine.GetCellValue(path, i + 1, 1, isMtx, false) === back[i], true);
    check("isMtx " + i, isMtx.value, false);
  }
  check("256 byte values", allBytes().length, 256);
}

function testMatrices(path) {
  engine.SetCellValue("title of its own", path, 1, 2);
  var title = { value: "" };
  engine.PutMatrix(path, 1, 2, title);
  check("PutMatrix", title.value, "title of its own");
  var isMtx = { value: false };
  engine.GetCellValue(path, 1, 2, isMtx);
  check("isMtx", isMtx.value, true);
  engine.CopyCell(path, 1, 1, path, 2, 2, true, true);
  checkCode("CopyCell", 0);
  var m = [["", "", ""], ["", "", ""], ["", "", ""]];
  var last = { value: 2 };
  engine.ValueMatrix(m, path, 1, last, false);
  checkCode("ValueMatrix", 0);
  check("element 1,1", m[1][1], cyrillic);
  check("element 2,1", m[2][1], "title of its own");
  check("element 0,0 stays", m[0][0], "");
  var beyond = { value: 99 };
  engine.ValueMatrix(repeatArray(3, 9), path, 7, beyond);
  check("the record beyond the last", beyond.value, 9);
}
function repeatArray(fields, records) {
  var array = [];
  for (var f = 0; f < fields; ++f) {
    array[f] = [];
    for (var r = 0; r < records; ++r) array[f][r] = "";
  }
  return array;
}

function testTypes(path) {
  engine.SetTypeValue(path, 2, 2, "type", "number");
  check("GetTypeValue", engine.GetTypeValue(path, 2, 2, "type", false), "number");
  check("GetCellDataType", engine.GetCellDataType(path, 2, 2), 2);
  check("GetID", typeof engine.GetID(path, 2, 2), "number");
  check("ReBit", engine.ReBit(path, 2, 2, 4), undefined);
  engine.ReBit(path, 0, 2, 4);
  checkCode("ReBit of record 0", 20);
  engine.CloseAll();
  check("dBASEFldSize", engine.dBASEFldSize('"' + folder + '\\absent.dbf"', 1), undefined);
}

function testQueries(path) {
  engine.SetCellValue("\u043E\u043C\u0441\u043A", path, 3, 2);
  engine.SetCellValue("\u0422\u0432\u0435\u0440\u044C", path, 4, 2);
  var field = { value: 2 };
  check("MtxFindFirst", engine.MtxFindFirst(path, 1, field, "\u041E\u041C\u0421\u041A", 0, false, 0, false), 3);
  check("MtxFindFirst, exact", engine.MtxFindFirst(path, 1, 2, "\u041E\u041C\u0421\u041A", 0, false, 0, true), -1);
  check("MtxFindMin", typeof engine.MtxFindMin(path, 2), "number");
  check("MtxFindMax", engine.MtxFindMax(path, 2), 3);
  check("ExecCmd", engine.ExecCmd("=records;", path, 1, 1), "8");
  check("ExecCmd, a text", engine.ExecCmd('="\u0416"+"\u0451";', path, 1, 1), "\u0416\u0451");
  check("Cmd", engine.Cmd("x", 0), "");
  check("a view", engine.Records(path + '/f(2)="\u043E\u043C\u0441\u043A"'), 1);
}

function testStyles(path) {
  var out = [{ value: 0 }, { value: 0 }, { value: null }, { value: null }, { value: 0 }];
  engine.SetFldStyle(path, 2, 11, 1, false, false, 10);
  checkCode("SetFldStyle", 0);
  engine.GetFldStyle(path, 2, out[0], out[1], out[2], out[3], out[4]);
  checkCode("GetFldStyle", 0);
  check("FreeSize", out[0].value, 11);
  check("FixedType", typeof out[2].value, "boolean");
  engine.SortData(path, 2);
  checkCode("SortData", 0);
}

function testWholeFiles(path) {
  engine.InsFirstLvlMtx(path);
  checkCode("InsFirstLvlMtx", 0);
  check("one record on top", engine.Records(path), 1);
  engine.SaveMtxAs(path + "/[1,1]", folder + "\\js.orv", false, 1);
  checkCode("SaveMtxAs", 0);
  check("the exported file", engine.IsORVorDBF('"' + folder + '\\js.orv"'), 1);
  engine.CloseAll();
  check("Records of a missing file", engine.Records('"' + folder + '\\absent.orv"'), -1);
  checkCode("a missing file", 53);
  engine.CloseAll();
}

function testRefusals(path) {
  checkRefused("an unknown member", function () { engine.NoSuchMember(path); });
  checkRefused("a missing argument", function () { engine.Records(); });
  checkRefused("a text that is no number", function () { engine.GetCellValue(path, "abc", 1); });
}

try {
  var file = '"' + folder + "\\" + cyrillic + '.orv"';
  testLife();
  testCells(file);
  testMatrices(file);
  testTypes(file);
  testQueries(file);
  testStyles(file);
  testWholeFiles(file);
  testRefusals(file);
  if (failures === 0) WScript.Echo("all " + checks + " checks passed");
} catch (failure) {
  WScript.Echo("after " + checks + " checks: " + failure.message + " " + failure.number);
}
