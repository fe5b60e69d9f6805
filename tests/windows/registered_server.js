// A script in the host's place: what it is asked and told goes to the output.
function EventList() {}
EventList.prototype.AddAdvise = function (code, sink, iid, text) {
  WScript.Echo("AddAdvise " + code + " " + typeof sink + " [" + iid + "] " + text);
  return {Enabled: true};
};

function Host() {}
Host.prototype.EventList = function () { return new EventList(); };

function Shape(kind) { this.kind = kind; }
Shape.prototype.CellExists = function (name, where) {
  WScript.Echo("CellExists " + name + " " + where);
  return true;
};
Shape.prototype.Cells = function (name) {
  var kind = this.kind;
  return {Formula: function () { return '"' + kind + '"'; }};
};

var server = new ActiveXObject("VardoBasic.Application");
var host = new Host();
server.SetupEventSink(host);
server.SetupEventSink(host);
server.ShowEditor(host, new Shape("create"));
try {
  server.ShowEditor(host, host);
} catch (error) {
  WScript.Echo("the host for a shape: " + error.description);
}
