Option Explicit
Dim a, b(3), c()
Const Limit = &H1F, Name = "say ""hi"""
ReDim Preserve c(Limit + 1)
On Error Resume Next
Set o = CreateObject("Scripting.Dictionary") _
    .Item(1)
If a > 1 And Not b(0) Is Nothing Then
    a = -2 ^ 2 Mod 3 \ 4 & "x"
ElseIf a = #1/2/2003# Then : Call f(1, , 3)
Else
    f (a), b
End If
If a Then x = 1 Else x = 2 End If
Select Case a
    Case 1, 2 : x = .5E-3
    Case Else
End Select
Do While a < 10 : a = a + 1 : Loop
Do : Exit Do : Loop Until a
While a : Wend
For i = 10 To 1 Step -1 : Next
For Each k In o.Keys : Exit For : Next
With o : .Add "k", [odd name] : End With
Randomize : Erase c : On Error GoTo 0
Rem done
