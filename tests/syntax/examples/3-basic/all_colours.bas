' Sums the values of a range.
Option Explicit

Public Function SumRange(ByVal First As Long, ByVal Last As Long) As Long
    Dim Total As Long, Mask As Long
    Mask = &HFF
    Total = 0 ' start empty
    For i = First To Last
        Total = Total + (i And Mask)
    Next
    Rem the result
    remark = "not a variable"
    If Total > 1e3 Then Print"big" Else Print "small"
    SumRange = Total
End Function
