#include "screens/results/ShownLevel.hpp"

#include "engine/tree/LUMFileContainer.hpp"

#include <utility>

namespace tessaly {

namespace {

/// nullptr when no child has this name, or when it is a file.
const tree::LUMFileContainer *folderNamed(const tree::LUMFileContainer &parent,
                                          std::string_view name)
{
    for (const tree::LUMFileItem &child : parent.subitems()) {
        if (child.itemName() == name) {
            return child.asContainer();
        }
    }
    return nullptr;
}

} // namespace

void ShownLevel::setTree(std::shared_ptr<tree::ScanTree> tree)
{
    m_tree = std::move(tree);
    m_folder = m_tree ? &m_tree->root() : nullptr;
}

void ShownLevel::takePathOfTree()
{
    m_path = m_tree ? std::optional<std::string>(m_tree->root().itemName()) : std::nullopt;
}

void ShownLevel::goDown(std::string_view name, std::string path)
{
    m_path = std::move(path);
    m_folder = m_folder != nullptr ? folderNamed(*m_folder, name) : nullptr;
}

bool ShownLevel::isTop() const noexcept
{
    return m_folder != nullptr && m_folder->parentContainer() == nullptr;
}

bool ShownLevel::canGoUp() const noexcept
{
    return m_path && m_folder != nullptr && m_folder->parentContainer() != nullptr;
}

void ShownLevel::goUp(std::optional<std::string> path)
{
    m_folder = m_folder->parentContainer();
    m_path = std::move(path);
}

} // namespace tessaly
