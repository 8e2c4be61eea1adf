       IDENTIFICATION DIVISION.
       PROGRAM-ID. ADDUP.
      *> Adds two numbers and shows the sum.
       DATA DIVISION.
       WORKING-STORAGE SECTION.
       01  WS-FIRST      PIC 9(4) VALUE 1200.
       01  WS-SECOND     PIC 9(4) VALUE 34.
       01  WS-SUM        PIC 9(5) COMP-3.
       PROCEDURE DIVISION.
           ADD WS-FIRST TO WS-SECOND GIVING WS-SUM
           DISPLAY "SUM IS " WS-SUM  *> shown on the console
           STOP RUN.
