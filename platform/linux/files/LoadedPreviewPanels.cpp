#include "platform/linux/files/LoadedPreviewPanels.hpp"

#include "platform/PreviewModule.hpp"
#include "platform/linux/files/MissingPreviewPanels.hpp"

#include <QCoreApplication>
#include <QFile>
#include <QLibrary>
#include <QLoggingCategory>

#include <utility>

namespace tessaly {

namespace {

Q_LOGGING_CATEGORY(previewLog, "tessaly.preview")

std::unique_ptr<PreviewPanels> panelsOf(const std::string &modulePath, SettingsStore &settings)
{
    // Never unloaded: Qt keeps metatypes and plugins of its code until the process ends.
    QLibrary module(QFile::decodeName(QByteArray::fromStdString(modulePath)));
    // Loaded at run time and not linked: the libraries for documents and media would delay every
    // start of the program.
    const auto make = reinterpret_cast<MakePreviewPanels>(module.resolve(makePreviewPanelsName));
    if (make == nullptr) {
        qCCritical(previewLog, "There are no previews: %s", qUtf8Printable(module.errorString()));
        return std::make_unique<MissingPreviewPanels>();
    }
    return std::unique_ptr<PreviewPanels>(make(settings));
}

} // namespace

LoadedPreviewPanels::LoadedPreviewPanels(std::string modulePath, SettingsStore &settings)
    : m_modulePath(std::move(modulePath)), m_settings(settings)
{
}

LoadedPreviewPanels::~LoadedPreviewPanels() = default;

std::string LoadedPreviewPanels::modulePathOfProgram()
{
    const QString folder = QCoreApplication::applicationDirPath();
    return QFile::encodeName(folder).toStdString() + "/" TESSALY_PREVIEW_MODULE;
}

bool LoadedPreviewPanels::sharedPreviewPanelExists() const
{
    // Without loading the module: there is no panel before one is asked for.
    return m_panels != nullptr && m_panels->sharedPreviewPanelExists();
}

PreviewPanel &LoadedPreviewPanels::sharedPreviewPanel()
{
    // A module that cannot be loaded is not tried again: its stand-in stays.
    if (m_panels == nullptr) {
        m_panels = panelsOf(m_modulePath, m_settings);
        m_panels->setController(m_controller); // it was set before there was a panel
    }
    return m_panels->sharedPreviewPanel();
}

void LoadedPreviewPanels::setController(PreviewPanelController *controller)
{
    m_controller = controller;
    if (m_panels != nullptr) {
        m_panels->setController(controller);
    }
}

} // namespace tessaly
