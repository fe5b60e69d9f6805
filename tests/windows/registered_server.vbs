' What a script is answered goes to the output.
Option Explicit

Sub Report(what)
  WScript.Echo what & ": " & Hex(Err.Number) & " " & Err.Description
  Err.Clear
End Sub

Dim t, one
WScript.Echo TypeName(CreateObject("VardoBasic.Application.1"))
Set t = CreateObject("VardoBasic.Application")
Set one = t
WScript.Echo TypeName(t)
t.AddVardoMenu
t.InitializePage
t.CopyAndPaste one
t.CopyAndPaste Nothing

On Error Resume Next
t.SetupEventSink Nothing
Report "Nothing for the host"
t.ShowEditor one, Nothing
Report "Nothing for a shape"
t.ShowEditor one, one
Report "the server itself for a shape"
t.ShowEditor one
Report "no shape"
t.ShowEditor one, 5
Report "a number for a shape"
t.Nonsense
Report "no such method"
