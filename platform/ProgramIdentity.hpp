#pragma once

namespace tessaly {

/// Who the program is to a desktop: the name of its desktop file without the ending, of its icon in
/// an icon theme, of its entry in software catalogues, and of itself on the session bus.
/// resources/desktop has the files.
inline constexpr auto programId = "io.tessaly.Tessaly";

/// The id as the path of an object on the bus.
inline constexpr auto programObjectPath = "/io/tessaly/Tessaly";

} // namespace tessaly
