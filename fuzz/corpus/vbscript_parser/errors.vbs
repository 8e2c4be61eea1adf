Sub A
  If x Then
    y = "open
End Sub
Next
Function F(ByRef a, b()) : Exit Sub : End Sub
x = (1 + _
