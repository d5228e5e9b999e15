// scenario.js FOLDER HOSTFOLDER: makes the calls of FOLDER\requests.txt through the automation server
// and compares result, arguments and error code of each with FOLDER\replies.txt.
var folder = WScript.Arguments(0);
var hostFolder = WScript.Arguments(1);
var comFolder = folder.replace(/\\/g, "/") + "/com";
var engine = new ActiveXObject("Orv.Engine");
var files = new ActiveXObject("Scripting.FileSystemObject");

function readLines(name) {
  var stream = files.OpenTextFile(folder + "\\" + name, 1, false, -1);
  var lines = stream.ReadAll().split("\n");
  stream.Close();
  if (lines[lines.length - 1] === "") lines.pop();
  return lines;
}

function readObject(line) {
  return eval("(" + line.split(hostFolder).join(comFolder) + ")");
}

function isArray(x) {
  return typeof x === "object" && x !== null && x.fields !== undefined;
}

function makeArray(bounds) {
  if (bounds.fields[0] !== 0 || bounds.records[0] !== 0) throw new Error("an array counts from 0");
  var array = [];
  for (var f = 0; f <= bounds.fields[1]; ++f) {
    array[f] = [];
    for (var r = 0; r <= bounds.records[1]; ++r) array[f][r] = "";
  }
  return array;
}

// Objects with a property `value` stand for variables that are passed by reference.
function makePlaces(args) {
  var places = [];
  for (var i = 0; i < args.length; ++i) {
    places[i] = isArray(args[i]) ? makeArray(args[i]) : { value: args[i] };
  }
  return places;
}

function call(name, a) {
  var e = engine;
  switch (a.length) {
    case 0: return e[name]();
    case 1: return e[name](a[0]);
    case 2: return e[name](a[0], a[1]);
    case 3: return e[name](a[0], a[1], a[2]);
    case 4: return e[name](a[0], a[1], a[2], a[3]);
    case 5: return e[name](a[0], a[1], a[2], a[3], a[4]);
    case 7: return e[name](a[0], a[1], a[2], a[3], a[4], a[5], a[6]);
    case 8: return e[name](a[0], a[1], a[2], a[3], a[4], a[5], a[6], a[7]);
  }
  throw new Error("no member has " + a.length + " parameters");
}

function show(x) {
  return x === undefined || x === null ? "nothing" : typeof x + " " + escape(String(x));
}

var calls = 0;
var differences = 0;
function compare(line, what, expected, actual) {
  if (show(expected) === show(actual)) return;
  ++differences;
  WScript.Echo("call " + line + ", " + what + ": the host has " + show(expected) + ", automation " +
               show(actual));
}

function compareArray(line, expected, actual) {
  for (var f = 0; f < expected.length; ++f) {
    for (var r = 0; r < expected[f].length; ++r) {
      compare(line, "element " + f + "," + r, expected[f][r], actual[f][r]);
    }
  }
}

function play(line, request, reply) {
  var places = makePlaces(request.args || []);
  var result = call(request.member, places);
  var error = engine.ErrorCode();
  compare(line, request.member + " fault", undefined, reply.fault);
  compare(line, request.member + " result", reply.result, result);
  compare(line, request.member + " error", reply.error, error);
  for (var i = 0; i < places.length; ++i) {
    if (isArray(request.args[i])) {
      compareArray(line, reply.args[i].values, places[i]);
    } else {
      compare(line, request.member + " argument " + (i + 1), reply.args[i], places[i].value);
    }
  }
  ++calls;
}

function playAll() {
  var requests = readLines("requests.txt");
  var replies = readLines("replies.txt");
  compare(0, "number of replies", requests.length, replies.length);
  for (var i = 0; i < requests.length; ++i) {
    play(i + 1, readObject(requests[i]), readObject(replies[i]));
  }
}

try {
  playAll();
  WScript.Echo(differences === 0 ? "all " + calls + " calls agree" : differences + " differences");
} catch (failure) {
  WScript.Echo("call " + (calls + 1) + ": " + failure.message + " " + failure.number);
}
