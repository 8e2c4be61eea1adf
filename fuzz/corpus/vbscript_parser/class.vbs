Class Account
    Private m_balance
    Public Default Property Get Balance() : Balance = m_balance : End Property
    Property Let Balance(ByVal v) : m_balance = v : End Property
    Property Set Owner(ByRef o) : End Property
    Public Function Deposit(amount, ByRef log())
        If amount <= 0 Then Exit Function
        m_balance = m_balance + amount : Deposit = Me.Balance
    End Function
    Private Sub Class_Initialize : m_balance = 0 : End Sub
End Class
Set acct = New Account
