#include "app/controls/interface/InterfaceShortcuts.hpp"

#include <QAbstractButton>
#include <QXmlStreamReader>

namespace tessaly {

using namespace Qt::StringLiterals;

InterfaceShortcuts::InterfaceShortcuts(const QByteArray &file)
{
    QXmlStreamReader reader(file);
    QString widget; // whose element began last: properties stand before children
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement) {
            continue;
        }
        const QStringView name = reader.attributes().value("name"_L1);
        if (reader.name() == "widget"_L1) {
            widget = name.toString();
        } else if (reader.name() == "action"_L1) {
            widget.clear(); // an action keeps its keys when it is given a text
        } else if (reader.name() == "property"_L1 && name == "shortcut"_L1 && !widget.isEmpty()) {
            const QString keys =
                reader.readElementText(QXmlStreamReader::IncludeChildElements).trimmed();
            m_keys.emplace_back(widget, QKeySequence(keys, QKeySequence::PortableText));
        }
    }
    // QUiLoader reports the broken file; half of its keys would only confuse.
    if (reader.hasError()) {
        m_keys.clear();
    }
}

void InterfaceShortcuts::applyTo(QWidget &root) const
{
    for (const auto &[name, keys] : m_keys) {
        auto *button = root.objectName() == name ? qobject_cast<QAbstractButton *>(&root)
                                                 : root.findChild<QAbstractButton *>(name);
        if (button != nullptr) {
            button->setShortcut(keys);
        }
    }
}

} // namespace tessaly
