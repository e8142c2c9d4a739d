; Adds the powers of two, each through another addressing mode, with X = 2 and Y = 3: a bit of the
; accumulator for each mode. Fills a memory of 1 KiB from address 0 on.
;
; 64tass --nostart --output=all-modes.bin all-modes.asm

        * = $0000
        .fill $0400, 0

        * = $0010
        .byte $02               ; zero page
        * = $0012
        .byte $04               ; zero page $10 + X

        * = $0022
        .word $0306             ; the pointer at $20 + X
        * = $0030
        .word $0300             ; the pointer that Y is added to

        * = $0200
        adc #$01
        adc $10
        adc $10,x
        adc $0308
        adc $0308,x
        adc $0308,y
        adc ($20,x)
        adc ($30),y             ; the accumulator is $FF now
        adc #$01                ; and $00, with the carry set
        tax                     ; has no effect on this machine

        * = $0303
        .byte $80               ; $0300 + Y
        * = $0306
        .byte $40               ; after the pointer at $22
        * = $0308
        .byte $08               ; absolute
        * = $030a
        .byte $10               ; $0308 + X
        * = $030b
        .byte $20               ; $0308 + Y
