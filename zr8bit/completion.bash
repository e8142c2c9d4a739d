# Completion of zr8bit for bash, from 3.2 on.

_zr8bit()
{
    local word=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local group=${COMP_WORDS[1]} choices='' kind=file choice

    case "$COMP_CWORD $group $previous" in
        1\ *) choices='run describe disassemble text db sound image sprite --help --version' kind= ;;
        2\ text\ * | 2\ db\ *) choices='encode decode --help' kind= ;;
        2\ sound\ *) choices='encode decode render pitch --help' kind= ;;
        2\ image\ * | 2\ sprite\ *) choices='encode decode preview --help' kind= ;;
        *\ --instructions) choices='documented all' kind= ;;
        *\ describe\ *) choices='MOS6510 --instructions --help' kind= ;;
        *\ --newline) choices='lf cr crlf' kind= ;;
        *\ --fit) choices='contain cover stretch' kind= ;;
        *\ --dither) choices='none bayer floyd-steinberg' kind= ;;
        *\ --processor | *\ --memory | *\ --set | *\ --start | *\ --until | *\ --steps | *\ --per-line | \
            *\ --format | *\ --separator | *\ --width | *\ --height | *\ --scale | *\ --transparent | \
            *\ --size | *\ --background | *\ --dump | *\ --at | *\ --label | *\ --frame | *\ --columns | \
            *\ --tick | *\ --rate)
            kind= ;;
        *\ sprite\ -o | *\ sprite\ --output) [[ ${COMP_WORDS[2]} != decode ]] || kind=directory ;;
        *) [[ $word != -* ]] || case "$group ${COMP_WORDS[2]}" in
            run\ *) choices='--processor --memory --instructions --load --set --dump --save --start --until --steps
                --trace --log --help' ;;
            disassemble\ *) choices='--at --instructions --output --help' ;;
            text\ *) choices='--lines --output --help' ;;
            db\ encode) choices='--hex --padded --per-line --newline --label --output --help' ;;
            db\ decode) choices='--output --help' ;;
            sound\ render) choices='--format --tick --rate --plot --output --help' ;;
            sound\ pitch) choices='--value --help' ;;
            sound\ *) choices='--format --separator --output --help' ;;
            image\ decode) choices='--width --output --help' ;;
            image\ encode) choices='--size --screen --fit --background --dither --output --help' ;;
            image\ preview) choices='--size --screen --fit --background --dither --scale --output --help' ;;
            sprite\ encode) choices='--transparent --frame --output --help' ;;
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
