// The threshold the qel tool binarises with when the user names none.
#ifndef QEL_TOOL_BINARISE_H
#define QEL_TOOL_BINARISE_H

#include <string>

namespace cli {

constexpr int kGreyLevels = 256;

struct ChosenThreshold {
    int level = 0;       // pixels at or above it become object (255)
    std::string reason;  // for the user: "Otsu", or why another level was taken
};

// Otsu's threshold from the library, as long as it leaves some pixels as background. The library
// leaves its brightest level out of Otsu's sums, so an image of two levels (a 0/128 or 0/255
// mask), and any image whose result lands on its darkest level, would turn entirely object. The
// tool then takes the darkest level alone as background and the next level present as the
// threshold. A single level is object when it is 128 or brighter, background otherwise.
ChosenThreshold chooseThreshold(const int hist[kGreyLevels]);

}  // namespace cli

#endif
