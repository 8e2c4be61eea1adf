; Copies a block of 512 bytes and returns the count in eax.
        section .text
        global copy_block
copy_block:
        push    ebp
        mov     ebp, esp
        mov     esi, [ebp+8]    ; source
        mov     edi, [ebp+12]   ; target
        mov     ecx, 128
        cld
        rep     movsd
        mov     eax, 512
        pop     ebp
        ret
