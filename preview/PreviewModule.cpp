#include "preview/PreviewModule.hpp"

#include "preview/QtPreviewPanels.hpp"

#include <type_traits>

static_assert(std::is_same_v<decltype(&tessalyMakePreviewPanels), tessaly::MakePreviewPanels>);

tessaly::PreviewPanels *tessalyMakePreviewPanels(tessaly::SettingsStore &settings)
{
    return new tessaly::QtPreviewPanels(&settings);
}
