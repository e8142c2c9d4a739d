#!/usr/bin/env bash
# each.sh INPUT LINE: evaluates a line once for each command of the host, with its words in $words and its output option
# in $to. An INPUT of '' is an example that the command takes. Prints how often which exit code and message came of it,
# and whether a file of the folder for outputs was another then.
mkdir -p old/dir
echo old | tee old/file >old/dir/frame-000.png
while IFS='|' read -r example words to; do
  rm -rf out
  cp -r old out
  words=${words/INPUT/${1:-examples/$example}}
  errors=$(eval "$2" 2>&1 >printed)
  echo "[$?] $(diff -rq old out >/dev/null || echo 'new output ')${errors##*$'\n'}"
done <<'END' | sed -E "s/(: .*): [^:]*$/\1/; s/([Ll]ine [0-9]+): .*/\1/; s#/[.]zr8bit-[^/]*##; s/ *$//" | sort | uniq -c
example.ini|run INPUT --trace --set XR=2 --set YR=3 --start 0x200 --until 0x216|
title.rom|run examples/example.ini --steps 0 --load INPUT@0|--save out/file@0:16
all-modes.bin|tvc INPUT --at 0 --frames 1|--screenshot out/file
sieve.bin|disassemble INPUT|-o out/file
greeting.txt|text encode INPUT|-o out/file
greeting.txt|text decode INPUT|-o out/file
title.rom|db encode INPUT|-o out/file
bytes.asm|db decode INPUT|-o out/file
scale.txt|sound encode INPUT|-o out/file
title.rom|sound decode INPUT|-o out/file
title.rom|sound render --tick 1 --rate 8000 INPUT|-o out/file
sunset.png|image encode INPUT|-o out/file
title.rom|image decode --width 4 INPUT|-o out/file
sunset.png|image preview INPUT|-o out/file
coin-0.png|sprite encode INPUT|-o out/file
title.rom|sprite decode --width 4 --height 4 INPUT|-o out/dir
title.rom|sprite preview --width 4 --height 4 INPUT|-o out/file
END
