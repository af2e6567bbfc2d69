# Makes Doxygen's comments of ours, which are plain texts: of its commands they use @file, @param, @return and @throws, of
# Markdown `code`, **emphasis**, lists and indented code; everything else stands for itself. Lines keep their numbers.

function escaped(text) {
    gsub(/[\\<>&#%"]/, "\\\\&", text)
    gsub(/@/, "\\@", text)
    gsub(/\\@param /, "@param ", text)
    gsub(/\\@return/, "@return", text)
    gsub(/\\@throws/, "@throws", text)
    return text
}

# The text of a comment, but for what stands between backquotes.
function prose(text,    parts, count, i, out) {
    count = split(text, parts, "`")
    for (i = 1; i <= count; ++i) out = out (i > 1 ? "`" : "") (i % 2 ? escaped(parts[i]) : parts[i])
    return out
}

# What a file's comment says on the line of @file itself would be taken for the file's name, so that goes to the line before.
NR == 2 && /^$/ { next }
NR == 3 { print /^\/\/\/ @file / ? "/// @file" : "" }
sub(/^\/\/\/ @file /, "") { $0 = "/// " $0 }

/^ *\/\/\/     / { print; next }

match($0, /\/\/\/<? /) {
    print substr($0, 1, RSTART + RLENGTH - 1) prose(substr($0, RSTART + RLENGTH))
    next
}

# What is ours of the standard library's templates is for the compiler.
/^template <>$/, /^};$/ { print ""; next }

{ print }
