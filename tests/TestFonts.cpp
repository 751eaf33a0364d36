#include "tests/TestFonts.hpp"

#include <cstdlib>

namespace tessaly {

void useTestFonts()
{
    setenv("FONTCONFIG_FILE", TESSALY_TEST_DATA_DIR "/fonts.conf", 1);
}

} // namespace tessaly
