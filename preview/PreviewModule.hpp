#pragma once

#include "platform/PreviewModule.hpp"

/// What the module with the previews exports; see MakePreviewPanels.
extern "C" __attribute__((visibility("default"))) tessaly::PreviewPanels *
tessalyMakePreviewPanels(tessaly::SettingsStore &settings);
