; Data made by zr8bit in a program for the Z80 of the TVC: it shows a picture, turns a coin before it and plays
; a tune, all in time with the frame interrupt, and ends with the tune. The routines in the middle step through
; the data and depend on no machine: their callers give the addresses.
;
; Makefile builds the listings that are included at the end, assembles the program by pasmo or z80asm, and runs
; it on the kit's bench of the TVC, where all is RAM. (On a TVC the pages of the memory are to be set first.)

        ORG $2000               ; any place below the screen

SCREEN: EQU $8000
STACK: EQU $8000                ; grows down from there
INTERRUPT: EQU $38              ; where interrupt mode 1 goes to
JUMP: EQU $C3                   ; JP

PITCH_LOW: EQU $04              ; ports
PITCH_HIGH: EQU $05             ; and the switch
VOLUME: EQU $06
FRAME_SEEN: EQU $07
SOUND_ON: EQU $10

COIN_PLACE: EQU 20 * 64 + 6     ; of the screen: row 20, pixel 12
COIN_FRAMES: EQU 4
TURN_TIME: EQU 6                ; frames of the screen that a frame of the coin stays

ROW_SIZE: EQU 64                ; bytes of a row of the screen, 128 pixels
COIN_ROW: EQU 8                 ; bytes of a row of the coin, 16 pixels
COIN_ROWS: EQU 40
COIN_PLANE: EQU COIN_ROW * COIN_ROWS
COIN_FRAME: EQU COIN_PLANE * 2  ; the colours and the mask
SOUND_END: EQU $F0

        jp main

; Where each routine and all data are, for who loads the program without its source.
        DW showPicture, drawCoin, copyText, nextRecord
        DW SUNSET, SUNSET_SIZE, COIN, COIN_SIZE, GREETING, GREETING_SIZE, TUNE, TUNE_SIZE

main:
        di
        ld sp,STACK
        ld a,JUMP
        ld (INTERRUPT),a
        ld hl,frameSeen
        ld (INTERRUPT+1),hl
        im 1
        ld de,SCREEN
        call showPicture
        out (FRAME_SEEN),a      ; the frames that have gone by meanwhile
        ei
frame:
        halt                    ; until the frame interrupt
        call playTune
        jr c,finish
        call turnCoin
        jr frame
finish:
        xor a
        out (PITCH_HIGH),a      ; silence
        di                      ; nothing comes any more
theEnd:
        jr theEnd

; The frame interrupt.
frameSeen:
        out (FRAME_SEEN),a      ; whatever is written
        ei
        ret

; A frame of the tune: a duration of 1 is a frame of the screen.
; out: carry at the end
playTune:
        ld hl,noteLeft
        or a                    ; no carry
        dec (hl)
        ret nz
nextNote:
        ld hl,(tunePlace)
        call nextRecord
        ret c
        ld (tunePlace),hl
        ld c,a
        ld a,b
        or a
        jr z,nextNote           ; it lasts no time
        ld (noteLeft),a
        ld a,e
        out (PITCH_LOW),a
        ld a,c
        add a,a
        add a,a
        out (VOLUME),a          ; bits 2 to 5
        ld a,d
        or SOUND_ON             ; no carry
        out (PITCH_HIGH),a
        ret

; Draws the next frame of the coin when it is time.
turnCoin:
        ld hl,coinLeft
        dec (hl)
        ret nz
        ld (hl),TURN_TIME
        call clearCoin
        ld a,(coinFrame)
        inc a
        cp COIN_FRAMES
        jr c,keepFrame
        xor a
keepFrame:
        ld (coinFrame),a
        ld de,SCREEN+COIN_PLACE
        jr drawCoin

; Puts the picture back where the coin is.
clearCoin:
        ld hl,SUNSET+COIN_PLACE
        ld de,SCREEN+COIN_PLACE
        ld a,COIN_ROWS
clearRow:
        ld bc,COIN_ROW
        ldir
        ld c,ROW_SIZE - COIN_ROW ; B is 0
        add hl,bc
        ex de,hl
        add hl,bc
        ex de,hl
        dec a
        jr nz,clearRow
        ret

tunePlace:
        DW TUNE
noteLeft:
        DB 1
coinFrame:
        DB COIN_FRAMES - 1
coinLeft:
        DB 1

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
