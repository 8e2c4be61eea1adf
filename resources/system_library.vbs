' The system's script library: helper procedures that every form script may call. Their
' names are reserved: a control, variable or function of a form can't take one of them.
Option Explicit

' The text of value, or fallback when value is Empty, Null or an empty text.
Function VfxTextOr(value, fallback)
    If IsNull(value) Or IsEmpty(value) Then
        VfxTextOr = fallback
    ElseIf CStr(value) = "" Then
        VfxTextOr = fallback
    Else
        VfxTextOr = CStr(value)
    End If
End Function

' text padded on the left with padChar up to width characters.
Function VfxPadLeft(text, width, padChar)
    Dim result
    result = CStr(text)
    If Len(result) < width Then result = String(width - Len(result), padChar) & result
    VfxPadLeft = result
End Function

' The smaller and the larger of two values.
Function VfxMin(a, b)
    If a < b Then VfxMin = a Else VfxMin = b
End Function

Function VfxMax(a, b)
    If a > b Then VfxMax = a Else VfxMax = b
End Function

' value held between low and high.
Function VfxClamp(value, low, high)
    VfxClamp = VfxMax(low, VfxMin(value, high))
End Function

' True when text holds nothing but blanks and tabs.
Function VfxIsBlank(text)
    VfxIsBlank = (Len(Trim(Replace(CStr(text), vbTab, " "))) = 0)
End Function

' The file name part of a path, behind its last backslash or slash.
Function VfxFileName(path)
    Dim at
    at = InStrRev(Replace(path, "/", "\"), "\")
    VfxFileName = Mid(path, at + 1)
End Function

' The folder part of a path, without its trailing separator.
Function VfxFolderName(path)
    Dim at
    at = InStrRev(Replace(path, "/", "\"), "\")
    If at > 0 Then VfxFolderName = Left(path, at - 1) Else VfxFolderName = ""
End Function

' A date as yyyy-mm-dd, and a date with its time as yyyy-mm-dd hh:nn:ss.
Function VfxIsoDate(value)
    VfxIsoDate = Year(value) & "-" & VfxPadLeft(Month(value), 2, "0") & "-" & _
                 VfxPadLeft(Day(value), 2, "0")
End Function

Function VfxIsoDateTime(value)
    VfxIsoDateTime = VfxIsoDate(value) & " " & VfxPadLeft(Hour(value), 2, "0") & ":" & _
                     VfxPadLeft(Minute(value), 2, "0") & ":" & VfxPadLeft(Second(value), 2, "0")
End Function

' The number of items of an array, 0 for anything that is not an array or has none.
Function VfxCount(items)
    VfxCount = 0
    If Not IsArray(items) Then Exit Function
    On Error Resume Next
    VfxCount = UBound(items) - LBound(items) + 1
    If Err.Number <> 0 Then VfxCount = 0
    On Error GoTo 0
End Function

' The index of value in items (without regard to case for texts), or -1.
Function VfxIndexOf(items, value)
    Dim i
    VfxIndexOf = -1
    If VfxCount(items) = 0 Then Exit Function
    For i = LBound(items) To UBound(items)
        If StrComp(CStr(items(i)), CStr(value), vbTextCompare) = 0 Then
            VfxIndexOf = i
            Exit Function
        End If
    Next
End Function

' items joined by separator, with each item converted to text first.
Function VfxJoin(items, separator)
    Dim i, result
    result = ""
    If VfxCount(items) > 0 Then
        For i = LBound(items) To UBound(items)
            If i > LBound(items) Then result = result & separator
            result = result & VfxTextOr(items(i), "")
        Next
    End If
    VfxJoin = result
End Function

' A number rounded half away from zero to digits places (Round rounds half to even).
Function VfxRound(value, digits)
    Dim factor
    factor = 10 ^ digits
    If value >= 0 Then
        VfxRound = Int(value * factor + 0.5) / factor
    Else
        VfxRound = -Int(-value * factor + 0.5) / factor
    End If
End Function

' Shows text with the form's caption as the title and gives the button that was pressed.
Function VfxMessage(text, buttons)
    VfxMessage = MsgBox(text, buttons, "Talvor")
End Function
