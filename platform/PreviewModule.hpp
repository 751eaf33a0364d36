#pragma once

namespace tessaly {

class PreviewPanels;
class SettingsStore;

/// What a module exports that draws previews: a library that is loaded for the first preview, since
/// the libraries for documents and videos are large and most sessions need none of them.
/// The program and the module are built together and are of one version.

/// Makes the way to the panel; the caller deletes it before the QApplication is destroyed.
/// The settings outlive it.
using MakePreviewPanels = PreviewPanels *(*)(SettingsStore &settings);

/// The name that it is exported by, as extern "C".
inline constexpr char makePreviewPanelsName[] = "tessalyMakePreviewPanels";

} // namespace tessaly
