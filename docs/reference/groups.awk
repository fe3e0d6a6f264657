# Doxygen's input filter for include/vesk. It adds the groups, so that the headers stay free of them.
#
#   the header                    the group of its topic, which docs/reference/pages.dox names
#   a comment of one line, as     a section, up to the next one
#     /* Hold and mute */
#   #define VESK_..._SIZE 16      documented like the first of its block
#
# Line numbers stay the same, so that Doxygen's messages name the right lines.

BEGIN {
  topic = ARGV[1]
  sub(/.*include\/vesk\//, "", topic)
  sub(/\.hp*$/, "", topic)
  sub(/\//, "_", topic)
  if (topic == "common") topic = "connecting"
  if (topic == "vesk_client") topic = ""
}

{ line[NR] = $0 }

# Doxygen accepts numbers of one and two digits as items of one list only in the same column.
topic == "" && /^ \*  [0-9]\. / { sub(/^ \*  /, " * ", line[NR]) }

topic == "" { next }

/^ \*\/$/ && !grouped {
  grouped = 1
  line[NR - 1] = line[NR - 1] " */ /** @addtogroup " topic
  line[NR] = " @{ */"
}

/^\/\* [^*]* \*\/$/ {
  title = substr($0, 4, length($0) - 6)
  notes = ""
  if (match(title, /\. /)) {
    notes = substr(title, RSTART + 2)
    title = substr(title, 1, RSTART - 1)
  }
  line[NR] = (section ? "/**@}*/ " : "") "/** @name " title
  section = NR
}

NR == section + 1 && section { line[NR] = "  " notes " @{ */" }

section && /^#ifdef __cplusplus$/ {
  line[NR] = "/**@}*/"
  line[NR + 1] = line[NR + 2] = ""
  skip = NR + 2
  section = 0
}

NR <= skip { line[NR] = NR == skip - 2 ? line[NR] : "" }

/^#define VESK_[A-Z0-9_]* [0-9]+$/ && previous !~ /\*\/$/ { line[NR] = $0 " /**< Bytes of the record. */" }

# The conventions do not give the size of a record: a comment without it is an error.
/^$/ { entry = ""; first = NR + 1 }
{ entry = entry $0 }
/^VESK_API/ { declaration = 1 }
declaration && /;$/ {
  declaration = 0
  if (entry ~ /void\* / && entry !~ /VESK_[A-Z]|vesk_/) sub(/^\/\*\*/, "/** @recordSizeIsMissing", line[first])
}

/^#endif$/ { last = NR }

{ previous = $0 }

END {
  if (topic != "") line[last] = "/** @} */"
  for (i = 1; i <= NR; ++i) print line[i]
}
