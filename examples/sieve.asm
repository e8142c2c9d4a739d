; Finds the primes below 256 by the sieve of Eratosthenes and writes them as a text, four characters a
; number, from $0400 on. Needs a memory that is 0 but for the program. Ends in a branch to itself.
;
; 64tass --nostart --output=sieve.bin sieve.asm

prime   = $10                   ; the number whose multiples are crossed out
decimal = $11                   ; the number in decimal digits: ones and tens, then hundreds
pad     = $13                   ; what a digit 0 is written as: a blank in front of the number
flags   = $0300                 ; a byte a number, not 0 when it is crossed out
text    = $0400

        * = $0200
        ldx #$ff
        txs

        ldx #2                  ; X is the number
sieve   lda flags,x
        bne next                ; no prime
        stx prime
        txa
cross   clc
        adc prime               ; its next multiple,
        bcs next                ; unless that is beyond 255
        tay
        sta flags,y
        bcc cross               ; always
next    inx
        cpx #16                 ; the multiples of all others are crossed out
        bne sieve

        ldx #0                  ; X is the number again,
        stx decimal             ; and so is this
        stx decimal+1
        inx
        inc decimal
        ldy #0                  ; Y is the place in the text
count   inx
        beq *                   ; after 255: the end
        sed
        lda decimal
        clc
        adc #1
        sta decimal
        lda decimal+1
        adc #0
        sta decimal+1
        cld
        lda flags,x
        bne count
        jsr number
        jmp count

number  lda #' '
        sta pad
        jsr put
        lda decimal+1
        jsr digit
        lda decimal
        lsr a
        lsr a
        lsr a
        lsr a
        jsr digit
        lda decimal
        and #$0f
digit   bne shown
        lda pad
        bne put                 ; always
shown   ora #'0'
        pha
        lda #'0'
        sta pad
        pla
put     sta text,y
        iny
        rts
