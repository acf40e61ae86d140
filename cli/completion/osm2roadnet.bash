# Completion of osm2roadnet's command line in bash. What there is to choose from the program says
# itself, by --help.
_osm2roadnet() {
  local word=${COMP_WORDS[COMP_CWORD]} option=${COMP_WORDS[COMP_CWORD - 1]} help choices
  # For bash, --format=gpkg is three words.
  if [[ $word == = ]]; then
    word=
  elif [[ $option == = ]]; then
    option=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  help=$("${1/#\~/$HOME}" --help 2>/dev/null)
  if [[ $word == -* ]]; then
    choices=$(grep -oE '^ +(-[a-z], )?--[a-z-]+' <<<"$help" | tr -d ,)
  else
    choices=$(awk -v option="$option" '
      /^  -/ {
        long = $1 ~ /,$/ ? 2 : 1
        if ($1 == option "," || $long == option) value = $(long + 1)
      }
      /^$/ { inFormats = 0 }
      inFormats { sub(/^  /, ""); sub(/  .*/, ""); formats = formats " " $0 }
      /^Formats/ { inFormats = 1 }
      END { if (value == "FORMAT") print formats; else if (value ~ /[|]/) print value }
    ' <<<"$help" | tr '|,' '  ')
  fi
  # Where there is nothing to choose from, bash offers files.
  mapfile -t COMPREPLY < <(compgen -W "$choices" -- "$word")
}
complete -o bashdefault -o default -F _osm2roadnet osm2roadnet
