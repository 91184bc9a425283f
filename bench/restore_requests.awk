# The requests a restore (no options but the volume) sends for a trustee document, one a line,
# computed independently of trovan from the document's text: one addTrustee per trustee and one
# modifyInheritedRightsFilter per filter, in document order. Expects a save's layout: the path on
# the <file> line, each trustee and each filter on a line of its own. Set m to the mount point.
function between(text, first, last,   rest) {
  rest = substr(text, index(text, first) + length(first))
  return substr(rest, 1, index(rest, last) - 1)
}
# The child elements of the element that opens with `first` (attributes and all).
function children(text, first, last,   inner) {
  inner = between(text, first, last)
  return substr(inner, index(inner, ">") + 1)
}
BEGIN {
  head = "<virtualIO><datastream name=\"command\"/></virtualIO><fileRequest><trustees>"
  tail = "</trustees></fileRequest>"
}
/<path>/ { path = between($0, "<![CDATA[", "]]>") }
/<trustee>/ {
  printf "%s<addTrustee><name>%s</name><rights>%s</rights><fileName>%s%s</fileName><gemelPath/><symLink/></addTrustee>%s\n",
    head, between($0, "<name>", "</name>"), children($0, "<rights ", "</rights>"), m, path, tail
}
/<trustee type="adID">/ {
  printf "%s<addTrustee type=\"adID\"><userID>%s</userID><rights>%s</rights><fileName>%s%s</fileName><gemelPath/><symLink/></addTrustee>%s\n",
    head, between($0, "<id>", "</id>"), children($0, "<rights ", "</rights>"), m, path, tail
}
/<inheritedRightsFilter / {
  printf "%s<modifyInheritedRightsFilter><inheritedRightsFilter>%s</inheritedRightsFilter><fileName>%s%s</fileName><gemelPath/></modifyInheritedRightsFilter>%s\n",
    head, children($0, "<inheritedRightsFilter ", "</inheritedRightsFilter>"), m, path, tail
}
