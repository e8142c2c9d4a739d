; Data made by zr8bit in a program for the Z80: a picture, a sprite, a text and a sound, and routines that
; step through them. The caller gives all addresses: nothing here depends on where a machine keeps its screen,
; calls its system or drives its sound generator.
;
; Makefile builds the listings that are included at the end, and assembles the program by pasmo or z80asm.

        ORG $4000               ; any free place

ROW_SIZE: EQU 64                ; bytes of a row of the screen, 128 pixels
COIN_ROW: EQU 8                 ; bytes of a row of the coin, 16 pixels
COIN_ROWS: EQU 40
COIN_PLANE: EQU COIN_ROW * COIN_ROWS
COIN_FRAME: EQU COIN_PLANE * 2  ; the colours and the mask
SOUND_END: EQU $F0

; Where each routine and all data are, for who loads the program without its source.
        DW showPicture, drawCoin, copyText, nextRecord
        DW SUNSET, SUNSET_SIZE, COIN, COIN_SIZE, GREETING, GREETING_SIZE, TUNE, TUNE_SIZE

; Copies the picture, which has the size of the whole screen.
; in: DE screen
showPicture:
        ld hl,SUNSET
        ld bc,SUNSET_SIZE
        ldir
        ret

; Draws a frame of the coin; what is behind its transparent pixels stays.
; in: A frame from 0 on, DE place of its first byte on the screen
drawCoin:
        ld hl,COIN
        ld bc,COIN_FRAME
        or a
findFrame:
        jr z,foundFrame
        add hl,bc
        dec a
        jr findFrame
foundFrame:
        push hl                 ; the colours
        pop ix
        ld bc,COIN_PLANE
        add ix,bc               ; the mask
        ld c,COIN_ROWS
drawRow:
        ld b,COIN_ROW
drawByte:
        ld a,(de)
        and (ix+0)
        or (hl)
        ld (de),a
        inc de
        inc hl
        inc ix
        djnz drawByte
        ex de,hl                ; to the next row of the screen
        push bc
        ld bc,ROW_SIZE - COIN_ROW
        add hl,bc
        pop bc
        ex de,hl
        dec c
        jr nz,drawRow
        ret

; Copies the text, whose codes are those of the machine.
; in: DE place for GREETING_SIZE bytes
copyText:
        ld hl,GREETING
        ld bc,GREETING_SIZE
        ldir
        ret

; Reads a record of the tune. Its end byte stands where a volume would.
; in: HL place in the tune, TUNE at first
; out: carry at the end; else A volume, DE pitch, B duration, HL the next record
nextRecord:
        ld a,(hl)
        cp SOUND_END
        scf
        ret z
        inc hl
        ld d,(hl)
        inc hl
        ld e,(hl)
        inc hl
        ld b,(hl)
        inc hl
        or a                    ; no carry
        ret

        INCLUDE "sunset.asm"
        INCLUDE "coin.asm"
        INCLUDE "greeting.asm"
        INCLUDE "tune.asm"
