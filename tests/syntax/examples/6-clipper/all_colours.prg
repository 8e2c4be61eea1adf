* Lists the customers with a balance above a limit.
FUNCTION ShowDebtors( nLimit )
   LOCAL nCount := 0   && how many were shown
   USE customer NEW
   DO WHILE .NOT. Eof()
      IF customer->balance > nLimit .AND. ! Deleted()
         ? customer->name, Str( customer->balance, 10, 2 )
         nCount++
      ENDIF
      SKIP   // next record
   ENDDO
   /* the table stays
      open for the caller */
   RETURN nCount
