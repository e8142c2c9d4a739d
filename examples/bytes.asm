; Three lines that an assembler and the host read alike.
table:  DB 10, $1F,$C0  ; the text in front of a line does not matter
        db 200,-1       ; as a byte 255
        DB $DB          ; not a keyword
