Option Explicit
Dim orderTotal, itemCount
Const MaxQuantity = 99

Sub Form_Load()
Set VEvent = new VfxEvent
Call VEvent.Init(0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0)

Dim i'counter
i = 0

orderTotal = 0
itemCount = 0
For i = (0) To (lstProducts.ListCount - 1)
lstProducts.Selected(i) = False
Next
Call UpdateTotal()
End Sub

Sub lstProducts_Click()
Set VEvent = new VfxEvent
Call VEvent.Init(0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0)


If (lstProducts.ListIndex >= 0) Then
txtQuantity.Text = "1"
Else
txtQuantity.Text = ""
End If
Call UpdateTotal()
End Sub

Sub txtQuantity_KeyPress(KeyAscii)
Set VEvent = new VfxEvent
Call VEvent.Init(KeyAscii,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0)


' only digits and Backspace
If (KeyAscii <> 8 And (KeyAscii < 48 Or KeyAscii > 57)) Then
KeyAscii = 0
Beep
Else
End If
End Sub

Sub txtQuantity_Change()
Set VEvent = new VfxEvent
Call VEvent.Init(0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0)

Dim quantity'entered value

quantity = ParseQuantity(txtQuantity.Text)
If (quantity > MaxQuantity) Then
txtQuantity.Text = CStr(MaxQuantity)
Else
Call UpdateTotal()
End If
End Sub

' keyboard shortcuts of the form

Sub cmdOK_KeyDown(KeyCode, Shift)
Set VEvent = new VfxEvent
Call VEvent.Init(KeyCode, Shift,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0)


Select Case KeyCode
Case 13
Call SaveOrder()
Case 27
Call ClearOrder()
Case Else
End Select
End Sub

Sub cmdOK_Click()
Set VEvent = new VfxEvent
Call VEvent.Init(0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0)

Dim answer'reply of the user

If (itemCount = 0) Then
MsgBox "Please choose a product first.", vbExclamation, "Order"
Exit Sub
Else
End If
answer = MsgBox("Place the order for " & FormatCurrency(orderTotal) & "?", vbYesNo, "Order")
If (answer = vbYes) Then
Call SaveOrder()
Else
End If
End Sub

Sub cmdCancel_Click()
Set VEvent = new VfxEvent
Call VEvent.Init(0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0)


Call ClearOrder()
End Sub

Sub UpdateTotal()
Dim price, quantity'unit price,amount
price = 0

If (lstProducts.ListIndex >= 0) Then
price = lstProducts.ItemData(lstProducts.ListIndex) / 100
Else
End If
quantity = ParseQuantity(txtQuantity.Text)
orderTotal = price * quantity
If (chkGiftWrap.Value = 1) Then
orderTotal = orderTotal + 2.5
Else
End If
itemCount = quantity
End Sub

Sub ClearOrder()

lstProducts.ListIndex = -1
txtQuantity.Text = ""
chkGiftWrap.Value = 0
Call UpdateTotal()
End Sub

Sub SaveOrder()
Dim attempt'tries so far
attempt = 0

Do
attempt = attempt + 1
If (WriteOrder(lstProducts.Text, itemCount, orderTotal)) Then
Exit Do
Else
End If
Loop While (attempt < 3)
Call ClearOrder()
End Sub

Function ParseQuantity(text)
Dim digits'the text as a number
digits = 0

If (IsNumeric(text)) Then
digits = CInt(text)
Else
End If
ParseQuantity = digits
End Function

Function WriteOrder(product, quantity, total)

Do While (quantity > MaxQuantity)
quantity = quantity - MaxQuantity
Loop
WriteOrder = (Len(product) > 0 And quantity > 0)
End Function

Function ScriptCmdMsg(nID, bCommand)

If bCommand Then
ScriptCmdMsg = 1
Select Case nID
Case 1001
Call SaveOrder()
Case 1002
Call ClearOrder()
Case Else ScriptCmdMsg = 0
End Select
Else
Dim SystemUIEnable, SystemUICheck
SystemUIEnable = 0
SystemUICheck = 0
Select Case nID
Case 1001
If (itemCount > 0) Then
SystemUIEnable = 1
Else
End If
Case 1002
SystemUIEnable = 1
Case Else
ScriptCmdMsg = -1
Exit Function
End Select
If SystemUIEnable <> 0 Then
SystemUIEnable = 1
End If
If SystemUICheck <> 0 Then
SystemUICheck = 1
End If
ScriptCmdMsg = SystemUICheck * 2 + SystemUIEnable
End If
End Function

Sub Form_Unload(Cancel)
Set VEvent = new VfxEvent
Call VEvent.Init(Cancel,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0,0)


If (orderTotal > 0) Then
Cancel = (MsgBox("Discard the order?", vbYesNo, "Order") = vbNo)
Else
End If
End Sub
