#pragma once

namespace tessaly {

class PreviewPanels;
class SettingsStore;

/// What a module exports that draws previews: a library that is loaded when the first preview is
/// asked for, since what it takes to draw documents and play videos is a lot for those who do not.
/// The program and the module are built together and are of one version.

/// Makes the way to the panel; the caller deletes it before the QApplication is destroyed.
/// The settings outlive it.
using MakePreviewPanels = PreviewPanels *(*)(SettingsStore &settings);

/// The name that it is exported by, as extern "C".
inline constexpr char makePreviewPanelsName[] = "tessalyMakePreviewPanels";

} // namespace tessaly
