/* Lists the customers of one state,
   with their balance. */
DEFINE VARIABLE cState AS CHARACTER NO-UNDO INITIAL "MA".
DEFINE VARIABLE dTotal AS DECIMAL NO-UNDO.

FOR EACH Customer NO-LOCK WHERE Customer.State = cState:
    DISPLAY Customer.Name Customer.Balance.
    dTotal = dTotal + Customer.Balance * 1.
END.
{include/footer.i}
DISPLAY dTotal LABEL "Total" FORMAT ">>>,>>9.99".
