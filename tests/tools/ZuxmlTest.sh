#!/usr/bin/env bash
# usage: ZuxmlTest.sh ZUXML
# Behaviour of the command-line tool: exit status, messages, and what it leaves on the disk.
set -uo pipefail

zuxml=$1
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work" || exit 1
export LC_ALL=C.UTF-8

passed=0 failed=0
check() {  # NAME EXPECTED ACTUAL
  if [[ $2 == "$3" ]]; then
    passed=$((passed + 1))
  else
    failed=$((failed + 1))
    printf 'FAILED %s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
  fi
}

# Runs the tool; leaves its exit status in $status and what it printed in the files out and err.
run() {
  status=0
  "$zuxml" "$@" > out 2> err || status=$?
}

fails() {  # NAME STATUS MESSAGE ARGUMENT...: MESSAGE is a pattern for the first line
  local name=$1 expected=$2 message=$3
  shift 3
  run "$@"
  check "$name: status" "$expected" "$status"
  local line
  IFS= read -r line < err
  # shellcheck disable=SC2053
  if [[ $line == $message ]]; then check "$name" ok ok; else check "$name" "$message" "$line"; fi
}

cat > a.xml <<'XML'
<?xml version="1.0"?>
<a n="1 &lt; &#xA;2">
  <b/>
  <c k="v">Grüße</c>
  <b> </b>
</a>
XML
compact='<a n="1 &lt; &#xA;2"><b/><c k="v">Grüße</c><b> </b></a>'

# Wrong usage is told apart from failures and never touches OUT.
echo old > old.xml
fails 'no command' 2 'zuxml: a command is missing'
fails 'unknown command' 2 "zuxml: unknown command 'copy'" copy a.xml b.xml
fails 'missing operand' 2 'zuxml: usage: zuxml convert *' convert a.xml
fails 'unknown option' 2 'zuxml: unknown option --shiny' convert --shiny a.xml old.xml
fails 'unknown short option' 2 'zuxml: unknown option -q' convert -q a.xml old.xml
fails 'option without value' 2 'zuxml: the option --eol needs a value' convert a.xml old.xml --eol
fails 'unknown value' 2 "zuxml: --eol takes one of lf, crlf, not 'cr'" convert a.xml old.xml --eol cr
fails 'indent out of range' 2 'zuxml: --indent takes a number*' convert a.xml old.xml --indent 17
fails 'indent with a tail' 2 'zuxml: --indent takes a number*' convert a.xml old.xml --indent 2x
fails 'unknown ending' 2 "zuxml: the ending of 'b.txt'*--to*" convert a.xml b.txt
fails 'tree takes no options' 2 'zuxml: unknown option --bare' tree --bare a.xml

# Failures name the input and the place, and leave OUT as it was and nothing beside it.
printf '<a>\n<b>\n</a>' > broken.xml
fails 'not well-formed' 1 'zuxml: broken.xml: mismatched tag at line 3' convert broken.xml old.xml
fails 'tree of the same' 1 'zuxml: broken.xml: mismatched tag at line 3' tree broken.xml
fails 'missing input' 1 'zuxml: none.xml: No such file or directory' convert none.xml old.xml
fails 'directory as input' 1 'zuxml: .: Is a directory' convert . old.xml
: > empty.xml
fails 'empty input' 1 'zuxml: empty.xml: XML Stream is empty!' convert empty.xml old.xml
{ printf '<a>%.0s' {1..3000}; printf '</a>%.0s' {1..3000}; } > deep.xml
fails 'too deep' 1 'zuxml: deep.xml: *nested too deeply, the limit is 1000, at /a/a/*' convert deep.xml old.xml
check 'OUT is kept' old "$(cat old.xml)"
fails 'output directory missing' 1 'zuxml: *none/b.xml: No such file or directory' convert a.xml none/b.xml
fails 'full disk' 1 'zuxml: /dev/full: No space left on device' convert --to xml a.xml /dev/full
"$zuxml" tree a.xml > /dev/full 2> err
check 'full standard output: status' 1 $?
check 'full standard output' 'zuxml: standard output: No space left on device' "$(cat err)"
"$zuxml" convert a.xml - --to xml 2> err >&-
check 'closed standard output: status' 1 $?
{ "$zuxml" tree deep.xml 2> err; echo $? > pipe_status; } | true
check 'closed pipe: status' 1 "$(cat pipe_status)"
check 'closed pipe' 'zuxml: standard output: Broken pipe' "$(cat err)"
(ulimit -f 1; trap '' XFSZ; yes '<b>0123456789</b>' | head -n 1000 | { echo '<a>'; cat; echo '</a>'; } |
  "$zuxml" convert - old.xml 2> /dev/null)
check 'file size limit: status' 1 $?
check 'file size limit: OUT is kept' old "$(cat old.xml)"
check 'nothing left behind' '' "$(find . -name '*.xml.*')"

# Forms.
run convert a.xml b.xml --compact --no-header
check 'compact' "$compact" "$(cat b.xml)"
run convert - - --indent 1 --eol crlf < a.xml
check 'indented' $'<?xml version="1.0" encoding="UTF-8"?>\r|<a n="1 &lt; &#xA;2">\r| <b/>\r' \
  "$(head -n 3 out | paste -s -d '|')"
for how in gzip zlib; do
  run convert a.xml packed --to xml --compress $how
  run convert packed b.xml --compact --no-header
  check "$how, told by content" "$compact" "$(cat b.xml)"
done
run convert a.xml b.xml.gz --compact --no-header
check 'gzip by ending' "$compact" "$(gzip -dc b.xml.gz)"
run convert a.xml b.finf
check 'fast infoset, told by ending' e0000001 "$(head -c 4 b.finf | od -An -tx1 | tr -d ' \n')"
run convert b.finf b.xml --compact --no-header
check 'fast infoset, told by content' "$compact" "$(cat b.xml)"
run convert - packed --to finf --compress gzip < a.xml
check 'fast infoset, compressed' "$(od -An -tx1 b.finf)" "$(gzip -dc < packed | od -An -tx1)"
"$zuxml" tree b.finf > tree.finf
check 'tree of fast infoset' "$("$zuxml" tree a.xml)" "$(cat tree.finf)"
head -c 20 b.finf > cut.finf
fails 'fast infoset cut short' 1 'zuxml: cut.finf: Failed to parse FastInfoset. Unexpected end of the document, at octet 20' convert cut.finf b.xml
run convert a.xml wide.xml --compact --no-header --encoding wide
check 'wide' "$compact" "$(tail -c +3 wide.xml | iconv -f UTF-32LE -t UTF-8)"
check 'wide: mark' 'fffe' "$(head -c 2 wide.xml | od -An -tx1 | tr -d ' \n')"
LC_ALL=C run convert a.xml b.xml --compact --no-header
check 'locale without UTF-8' "$compact" "$(cat b.xml)"
echo '<a>x<b/>y</a>' > mixed.xml
run convert mixed.xml - --compact --no-header
check 'mixed content' '<a><b/>xy</a>' "$(tr -d '\n' < out)"
check 'mixed content is told' 'zuxml: mixed.xml: text between child elements moves behind them (in 1 elements)' "$(cat err)"

# JSON.
cat > ns.xml <<'XML'
<r xmlns="urn:one"><p:b xmlns:p="urn:p" p:k="1 &quot;\2">x</p:b><i xmlns="urn:two">y&#xA;z</i><i xmlns="urn:two"/></r>
XML
run convert ns.xml ns.json --compact
check 'JSON' '{"ns1:r": {"@xmlns": "urn:two","@xmlns:ns1": "urn:one","@xmlns:p": "urn:p","p:b": {"@p:k": "1 \"\\2","#text": "x"},"i": ["y\nz",""],"#text": ""}}' "$(cat ns.json)"
run tree ns.xml
sed 's/^[^{]*//' out > ns.tree
for file in ns.json ns.json.gz; do
  run convert ns.xml $file
  run convert $file ns2.xml --compact
  run tree ns2.xml
  check "$file and back" "$(cat ns.tree)" "$(sed 's/^[^{]*//' out)"
done
run convert - - --from json --to xml --compact --no-header < ns.json
check 'JSON from standard input' "$(tail -n +2 ns2.xml)" "$(cat out)"
run convert ns.xml - --to json --compact --mode plain
check 'plain JSON' '{"r": {"b": {"k": "1 \"\\2","": "x"},"i": ["y\nz",""],"": ""}}' "$(cat out)"
echo '{"a": [1, 2], "b": {"c": true}} // end' > rootless.json
run convert rootless.json - --to xml --compact --no-header --root list
check 'JSON with a root given' '<list><a>1</a><a>2</a><b><c>true</c></b></list>' "$(cat out)"
fails 'JSON with several roots' 1 'zuxml: rootless.json: Error converting JSON to XML: The document has more than one root element, at /a?2]' convert rootless.json old.xml
printf '{"a":\n[1,]}' > broken.json
fails 'malformed JSON' 1 "zuxml: broken.json: Expected Value *, found ']' at line 2, position 4, at /a?2]" convert broken.json old.xml
fails 'unknown mode' 2 "zuxml: --mode takes one of full, marked, plain, not 'x'" convert a.xml old.xml --mode x

# OUT keeps its permissions and stays a link; a new one gets those of the umask; IN may be OUT.
chmod 640 b.xml
ln -s b.xml link.xml
run convert a.xml link.xml --compact --no-header
check 'permissions kept' 640 "$(stat -c %a b.xml)"
check 'link kept' b.xml "$(readlink link.xml)"
(umask 027; "$zuxml" convert a.xml new.xml)
check 'permissions of a new file' 640 "$(stat -c %a new.xml)"
run convert b.xml b.xml --compact --no-header
check 'in place' "$compact" "$(cat b.xml)"

# The tree.
cat > names.xml <<'XML'
<a xmlns:p="urn:p" n="1 &lt; &#xA;2"><p:b/><c p:k="v">Text</c><p:b xmlns="urn:d"><d/></p:b></a>
XML
run tree names.xml
check 'tree' '/a n="1 < &#xA;2"|/a/p:b[1] {urn:p}|/a/c {urn:p}k="v"|/a/p:b[2] {urn:p}|/a/p:b[2]/d {urn:d}' "$(paste -s -d '|' out)"
run tree deep.xml
check 'tree of a deep document' 3000 "$(grep -c . out)"
check 'long paths are cut' '.../a' "$(tail -n 1 out)"
run --version
check 'version' 'zuxml 16.1' "$(cat out)"
run --help
check 'help: status' 0 $status

printf '%d passed, %d failed\n' "$passed" "$failed"
[[ $failed == 0 ]]
