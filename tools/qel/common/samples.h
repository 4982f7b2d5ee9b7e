// Where the qel tool finds the files it is shipped with: the sample pictures, and the font the
// library's text functions read.
#ifndef QEL_TOOL_SAMPLES_H
#define QEL_TOOL_SAMPLES_H

#include <string>
#include <vector>

namespace cli {

// The directory of the running executable, "" where the system does not say.
std::string executableDirectory();

// The font file the library's text functions read: the file QEL_FONT_FILE names when it is set
// and not empty, else hzk16.dat in the executable's directory ("" when that is unknown).
std::string fontFile();

// The places a bundled sample is looked for, in order: the installed copy, in the samples
// directory the install puts beside the executable (PREFIX/share/qel/samples for PREFIX/bin/qel),
// then the source tree the tool was built from.
std::vector<std::string> sampleDirectories();

// Path of the bundled sample `name` (e.g. "coins.bmp"), the first of sampleDirectories() that
// holds it; UsageError naming the places looked in when none does.
std::string bundledSample(const std::string& name);

}  // namespace cli

#endif
