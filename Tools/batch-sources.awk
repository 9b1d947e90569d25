# awk -f batch-sources.awk [-v most=N]: reads paths of sources, and writes each behind the number of its batch and a
# tab. The sources of a batch can be compiled as one that includes them all, which saves reading their headers over
# and over: no name that is a source's own (in its nameless namespace, or a macro) is in two of them. Found by the
# form of lines; a name that is overlooked shows as an error of the compiler.

BEGIN { if (!most) most = 12 }

# The own names of the file, in names[0] to names[count - 1].
function Own(file, names,    line, inside, count, found) {
    count = 0
    inside = 0
    seesToolkit = 0
    while ((getline line < file) > 0) {
        if (line ~ /^#include <Q/) seesToolkit = 1
        if (line ~ /^namespace \{/) inside = 1
        else if (line ~ /^}  \/\/ namespace/) inside = 0
        else if (line ~ /^#define /) { split(line, found, /[ (]/); names[count++] = found[2] }
        else if (line ~ /^int main\(/) names[count++] = "main"
        else if (inside && match(line, /^(constexpr|const|static|inline|thread_local) .*[ *&][A-Za-z_0-9]+(\[[^]]*\])*( =|\{|;)/)) {
            sub(/(\[[^]]*\])*( =|\{|;).*/, "", line); sub(/.*[ *&]/, "", line); names[count++] = line
        }
        else if (inside && match(line, /^(class|struct|enum|union|using) +(class )?[A-Za-z_0-9]+/)) {
            line = substr(line, 1, RLENGTH); sub(/.* /, "", line); names[count++] = line
        }
        else if (inside && match(line, /^[A-Za-z_][^=(]*[ *&][A-Za-z_0-9]+\(/)) {
            line = substr(line, 1, RLENGTH - 1); sub(/.*[ *&]/, "", line); names[count++] = line
        }
    }
    close(file)
    return count
}

function Fits(batch, names, count,    i) {
    if (size[batch] >= most || (size[batch] && kind[batch] != seesToolkit)) return 0
    for (i = 0; i < count; i++) if ((batch, names[i]) in taken) return 0
    return 1
}

{
    count = Own($0, names)
    for (batch = 0; !Fits(batch, names, count); batch++) {}
    size[batch]++
    kind[batch] = seesToolkit
    for (i = 0; i < count; i++) taken[batch, names[i]] = 1
    printf "%d\t%s\n", batch, $0
}
