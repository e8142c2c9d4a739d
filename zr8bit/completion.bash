# Completion of zr8bit for bash, from 3.2 on.

_zr8bit()
{
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local group=${COMP_WORDS[1]} choices='' kind=file choice

    case "$COMP_CWORD $group $previous" in
        1\ *) choices='run tvc describe disassemble text db sound image sprite --help --version' kind= ;;
        2\ text\ * | 2\ db\ *) choices='encode decode --help' kind= ;;
        2\ sound\ *) choices='encode decode import render pitch --help' kind= ;;
        2\ image\ *) choices='encode decode preview palette --help' kind= ;;
        2\ sprite\ *) choices='encode decode preview --help' kind= ;;
        *\ --instructions) choices='documented all' kind= ;;
        *\ --type) choices='MOS6510 Z80' kind= ;;
        *\ describe\ *) choices='MOS6510 Z80 --instructions --help' kind= ;;
        *\ --newline) choices='lf cr crlf' kind= ;;
        *\ --fit) choices='contain cover stretch' kind= ;;
        *\ --dither) choices='none bayer bayer2 bayer4 bayer8 floyd-steinberg' kind= ;;
        *\ --processor | *\ --memory | *\ --set | *\ --start | *\ --until | *\ --steps | *\ --cycles | \
            *\ --watch | *\ --exit | *\ --irq-every | *\ --history | *\ --frames | *\ --every | *\ run\ --output | \
            *\ tvc\ --output | *\ --per-line | \
            *\ --format | *\ --separator | *\ --width | *\ --height | *\ --scale | *\ --transparent | \
            *\ --size | *\ --background | *\ --crop | *\ --brightness | *\ --contrast | *\ --saturation | \
            *\ --dither-strength | *\ --dump | *\ --at | *\ --label | *\ --frame | *\ --columns | \
            *\ --tick | *\ --rate | *\ --track | *\ --channel)
            kind= ;;
        *\ sprite\ -o | *\ sprite\ --output) [[ ${COMP_WORDS[2]} != decode ]] || kind=directory ;;
        *) [[ $word != -* ]] || case "$group ${COMP_WORDS[2]}" in
            run\ *) choices='--processor --memory --instructions --load --set --start --reset --labels --load-state
                --until --steps --cycles --watch --exit --irq-every --output --trace --history --dump --save
                --save-state --log --help' ;;
            tvc\ *) choices='--at --frames --screenshot --every --sound --load --set --start --reset --labels
                --load-state --until --steps --cycles --watch --exit --output --trace --history --dump --save
                --save-state --log --help' ;;
            disassemble\ *) choices='--at --labels --type --instructions --output --help' ;;
            text\ encode) choices='--lines --replace --output --help' ;;
            text\ decode) choices='--lines --output --help' ;;
            db\ encode) choices='--hex --padded --per-line --newline --label --output --help' ;;
            db\ decode) choices='--output --help' ;;
            sound\ render) choices='--format --tick --rate --plot --output --help' ;;
            sound\ pitch) choices='--value --help' ;;
            sound\ import) choices='--track --channel --tick --output --help' ;;
            sound\ encode) choices='--format --separator --rests --output --help' ;;
            sound\ decode) choices='--format --separator --rests --notes --output --help' ;;
            image\ decode) choices='--width --screen --output --help' ;;
            image\ encode) choices='--crop --brightness --contrast --saturation --size --screen --fit --background
                --dither --dither-strength --output --help' ;;
            image\ preview) choices='--crop --brightness --contrast --saturation --size --screen --fit --background
                --dither --dither-strength --scale --output --help' ;;
            image\ palette) choices='--output --help' ;;
            sprite\ encode) choices='--transparent --frame --brightness --contrast --saturation --size --fit
                --dither --dither-strength --output --help' ;;
            sprite\ decode) choices='--width --height --sheet --columns --output --help' ;;
            sprite\ preview) choices='--width --height --scale --screen --output --help' ;;
        esac ;;
    esac

    COMPREPLY=()
    while IFS= read -r choice; do
        COMPREPLY+=("$choice")
    done < <(compgen ${choices:+-W "$choices"} ${kind:+-A "$kind"} -- "$word")
    # bash 3.2 has no compopt: there words count as file names too, which does them no harm.
    [[ -n $kind ]] || compopt +o filenames 2>/dev/null
}

complete -o filenames -F _zr8bit zr8bit
