# ./dev demo: builds the command and shows it at work on real data that nobody here wrote.
set -euo pipefail
source scripts/common.sh

usage() {
  cat <<'TEXT'
Usage: ./dev demo

Builds the orv command, fetches real tables from Debian packages into build/demo and prints every
command it runs with its output.
TEXT
}

case "${1:-}" in
  "") ;;
  -h | --help) usage; exit 0 ;;
  *) bad_usage "demo has no option $1" ;;
esac

# Unpacks a Debian package into a folder without installing it.
fetch_package() {
  local package="$1" folder="$2"
  [[ -d "$folder" ]] && return
  local unpacked
  unpacked="$(mktemp -d "$PWD/build/demo-XXXXXX")"
  (
    cd "$unpacked"
    apt-get -qq download "$package" || { apt-get -qq update && apt-get -qq download "$package"; }
    dpkg-deb -x "$package"_*.deb .
    rm "$package"_*.deb
  ) >"$unpacked/log" 2>&1 || {
    cat "$unpacked/log" >&2
    rm -rf "$unpacked"
    die "the package $package could not be fetched"
  }
  mv "$unpacked" "$folder"
}

say() { printf '\n# %s\n' "$*"; }

# Prints a command line and runs it.
run() {
  printf '\n$ %s\n' "$1"
  eval "$1"
}

need_packages $packages_demo
build_preset release orv_cli
mkdir -p build
packages="$PWD/build/demo-packages"
mkdir -p "$packages"
fetch_package iso-codes "$packages/iso-codes"
fetch_package r-cran-spdata "$packages/spdata"

export PATH="$PWD/build/release/bin:$PATH" LC_ALL=C.UTF-8
rm -rf build/demo
mkdir -p build/demo
python3 scripts/demo_tables.py "$packages/iso-codes" build/demo
cp "$packages/spdata/usr/lib/R/site-library/spData/shapes/world.dbf" build/demo/world.dbf
chmod u+w build/demo/world.dbf
cd build/demo

say "Countries of the world with their Russian names, from ISO 3166-1."
run 'orv import countries.csv countries.orv --title "Страны мира"'
run 'orv show countries.orv --records 187:191'

say "Into a cell of each country goes the table of its subdivisions, titled by the country's name."
run 'for file in subdivisions/*.csv; do
  record=$(basename "$file" .csv)
  orv import "$file" countries.orv "/[$record,5]" --title "$(orv get countries.orv $record 3)"
done | wc -l'
run 'orv show countries.orv --records 187:191'
run 'orv find countries.orv RU'
russia="$(orv find countries.orv RU)"
run "orv show countries.orv '/[$russia,5]' --records 30:35"
run 'orv info countries.orv --nested 2'

say "Cells are changed and read back; the neighbours keep their values."
run "orv set countries.orv $russia Country 'Russia (Eurasia)'"
run "orv get countries.orv $russia Country"
run "orv set countries.orv '/[$russia,5]' 30 'Название' 'Калмыкия'"
run "orv show countries.orv '/[$russia,5]' --records 29:31"

say "A view: the records for which a condition holds. Views may stand inside a path and on views."
run "orv filter countries.orv 'instr(1,cell(rec,3),\"остров\")>0' --field 1 --field 3"
run "orv filter countries.orv '/[$russia,5]' 'f(3)=Republic' --records 1:3"
run "orv find countries.orv '/[$russia,5]' край --field Название --contains"

say "Expressions over cells, in the context of a matrix."
run "orv exec countries.orv '=records*fields;'"
run "orv exec countries.orv '/[$russia,5]' '=\"Записей: \"+str(records);'"

say "A computed property: the text of a cell of this type comes from a formula."
run "orv props countries.orv --record $russia --field 2 --set 'comp==cell($russia,1)+\"/\"+cell($russia,3);'"
run "orv props countries.orv"
run "orv get countries.orv $russia 2"
run "orv get countries.orv $russia 2 --formula"

say "A dBASE III table made by other people's software, worked on in place."
run 'orv info world.dbf'
run 'orv show world.dbf --records 1:3 --field name_long --field continent --field pop'
run "orv set world.dbf 2 name_long 'United Republic of Tanzania'"
run 'orv show world.dbf --records 1:3 --field name_long --field continent'
run 'orv import world.dbf world.orv --title World'
run 'orv show world.orv --records 2 --field 2 --field 3 --field 6'

say "Few different values: a dictionary saves room. The copy without dead space shows how much."
run 'orv analyse world.orv'
run 'for field in continent region_un subregion type; do orv style world.orv $field --to dictionary; done'
run 'orv show world.orv --records 1:3 --field name_long --field continent --field type'
run 'orv compact world.orv --in-place'

say "Exports: delimited text, and a nested table as a container file of its own."
run "orv export world.orv world.txt --text --field-separator ';' --record-separator '\\n'"
run 'head -4 world.txt'
run "orv export countries.orv '/[$russia,5]' russia.orv --container --with-properties"
run 'orv info russia.orv'

say "A Cyrillic table in code page 866, written by shapelib's tools and read by them afterwards."
run 'dbfcreate towns.dbf -s NAME 20 -s OKRUG 20 -n PEOPLE 10 0'
run 'while IFS=, read -r name district people; do
  dbfadd towns.dbf "$name" "$district" "$people"
done < <(iconv -t cp866 <<TOWNS
Москва,Центральный,13010112
Казань,Приволжский,1308660
Пермь,Приволжский,1034002
TOWNS
)'
run 'orv show towns.dbf'
run 'orv set towns.dbf 3 NAME "Пермь Великая"'
run 'orv show towns.dbf'
run 'dbfdump towns.dbf | iconv -f cp866'

say "The same engine driven by a script: one JSON request a line, one reply a line."
run "orv host <<'REQUESTS'
{\"id\": 1, \"member\": \"Records\", \"args\": [\"\\\"countries.orv\\\"\"]}
{\"id\": 2, \"member\": \"GetCellValue\", \"args\": [\"\\\"countries.orv\\\"\", $russia, 3, false, false]}
{\"id\": 3, \"member\": \"SetTitle\", \"args\": [\"World\", \"\\\"world.dbf\\\"\"]}
REQUESTS"

say "The files are in build/demo."
