#include "Platform/Interface/Lists/ColumnListModel.h"

#include <QFont>
#include <QImage>
#include <QPixmap>
#include <algorithm>
#include <utility>

#include "Platform/Interface/Canvas/PixelImage.h"
#include "Platform/Interface/Lists/BranchIcon.h"
#include "Platform/Interface/Server/ViewPart.h"

namespace {

// Beyond so many pieces it is quicker to show all rows anew.
constexpr int kMaxCuts = 100;
// Device pixels of a cell's picture to one that the screen usually has.
constexpr double kPictureScale = 2.0;

// The cells in which two rows differ, as an area of columns.
struct Columns {
    int first = 0;
    int last = -1;

    void Add(int column) {
        if (last < first) first = column;
        last = column;
    }
};

Columns Differing(const ColumnListRow& a, const ColumnListRow& b, int count) {
    if (a.isMarked != b.isMarked || a.isBranch != b.isBranch || a.isEditable != b.isEditable ||
        a.tip != b.tip || a.cells.size() != b.cells.size())
        return {0, count - 1};
    Columns columns;
    for (std::size_t i = 0; i < a.cells.size(); i++)
        if (a.cells[i].text != b.cells[i].text || a.cells[i].picture != b.cells[i].picture)
            columns.Add(static_cast<int>(i));
    return columns;
}

}  // namespace

ColumnListModel::ColumnListModel(std::vector<ColumnListTitle> titles, Renamed renamed)
    : titles_(std::move(titles)), renamed_(std::move(renamed)), branchIcon_(MakeBranchIcon()) {}

ColumnListModel::~ColumnListModel() = default;

// --- Nodes ---

ColumnListModel::Node* ColumnListModel::NodeOf(const QModelIndex& index) {
    return static_cast<Node*>(index.internalPointer());
}

ColumnListModel::Node* ColumnListModel::FindNode(int64 key) const {
    const auto found = nodes_.find(key);
    return found == nodes_.end() ? nullptr : found->second.get();
}

ColumnListModel::Node* ColumnListModel::FindParent(const ColumnListRow& row) {
    return row.parent == ColumnListRow::kNoKey ? &root_ : FindNode(row.parent);
}

QModelIndex ColumnListModel::IndexOf(const Node* node, int column) const {
    return node == nullptr || node == &root_ ? QModelIndex()
                                             : createIndex(node->place, column, node);
}

QModelIndex ColumnListModel::IndexOf(int64 key) const {
    return IndexOf(FindNode(key), 0);
}

int64 ColumnListModel::KeyOf(const QModelIndex& index) {
    return index.isValid() ? NodeOf(index)->row.key : ColumnListRow::kNoKey;
}

void ColumnListModel::ForEachParent(
    const std::function<void(int64 key, const QModelIndex&)>& visit) const {
    for (const auto& [key, node] : nodes_)
        if (!node->children.empty()) visit(key, IndexOf(node.get(), 0));
}

void ColumnListModel::Renumber(const Node& parent, std::size_t from) {
    for (std::size_t i = from; i < parent.children.size(); i++)
        parent.children[i]->place = static_cast<int>(i);
}

QString ColumnListModel::TextOf(const Node& node, int column) {
    const auto place = static_cast<std::size_t>(column);
    return place < node.row.cells.size() ? ToText(node.row.cells[place].text) : QString();
}

// --- Updates ---

void ColumnListModel::Reset(const std::vector<ColumnListRow>& rows) {
    beginResetModel();
    nodes_.clear();
    root_.children.clear();
    for (const ColumnListRow& row : rows) {
        Node* const parent = FindParent(row);
        if (parent == nullptr || FindNode(row.key) != nullptr) continue;
        auto node = std::make_unique<Node>();
        node->row = row;
        node->parent = parent;
        node->place = static_cast<int>(parent->children.size());
        parent->children.push_back(node.get());
        nodes_.emplace(row.key, std::move(node));
    }
    endResetModel();
}

bool ColumnListModel::Show(const std::vector<ColumnListRow>& rows) {
    int cuts = 0;
    const std::vector<Node*> nodes = FindStaying(rows, &cuts);
    if (cuts > kMaxCuts) {
        Reset(rows);
        return true;
    }
    if (cuts > 0) {
        RemoveOthers();
        MakeMissing(rows, nodes);
        InsertMissing(&root_);
        for (Node* node : nodes)
            if (node != nullptr) InsertMissing(node);
    }
    ChangeStaying(rows, nodes);
    return cuts > 0;
}

std::vector<ColumnListModel::Node*> ColumnListModel::FindStaying(
    const std::vector<ColumnListRow>& rows, int* cuts) {
    root_.stays = true;
    root_.lastStaying = -1;
    for (const auto& [key, node] : nodes_) {
        node->stays = false;
        node->lastStaying = -1;
    }
    std::vector<Node*> nodes(rows.size(), nullptr);
    for (std::size_t i = 0; i < rows.size(); i++) {
        Node* const node = FindNode(rows[i].key);
        Node* const parent = FindParent(rows[i]);
        if (node == nullptr || parent == nullptr || node->stays || !parent->stays ||
            node->parent != parent || node->place <= parent->lastStaying) {
            if (i == 0 || nodes[i - 1] != nullptr) ++*cuts;
            continue;
        }
        node->stays = true;
        parent->lastStaying = node->place;
        nodes[i] = node;
    }
    const auto countRemovals = [cuts](const Node& parent) {
        bool isAfterStaying = true;
        for (const Node* child : parent.children) {
            if (isAfterStaying && !child->stays) ++*cuts;
            isAfterStaying = child->stays;
        }
    };
    countRemovals(root_);
    for (const Node* node : nodes)
        if (node != nullptr) countRemovals(*node);
    return nodes;
}

void ColumnListModel::RemoveOthers() {
    const auto removeFrom = [this](Node& parent) {
        auto& children = parent.children;
        for (std::size_t end = children.size(); end > 0;) {
            if (children[end - 1]->stays) {
                end--;
                continue;
            }
            std::size_t begin = end - 1;
            while (begin > 0 && !children[begin - 1]->stays)
                begin--;
            beginRemoveRows(IndexOf(&parent, 0), static_cast<int>(begin),
                            static_cast<int>(end) - 1);
            const auto at = children.begin();
            children.erase(at + static_cast<std::ptrdiff_t>(begin),
                           at + static_cast<std::ptrdiff_t>(end));
            Renumber(parent, begin);
            endRemoveRows();
            end = begin;
        }
    };
    removeFrom(root_);
    for (const auto& [key, node] : nodes_)
        if (node->stays) removeFrom(*node);
    std::erase_if(nodes_, [](const auto& entry) { return !entry.second->stays; });
}

// New nodes below new ones are complete before the highest of them is put in.
void ColumnListModel::MakeMissing(const std::vector<ColumnListRow>& rows,
                                  const std::vector<Node*>& nodes) {
    for (std::size_t i = 0; i < rows.size(); i++) {
        Node* node = nodes[i];
        Node* const parent = FindParent(rows[i]);
        if (node == nullptr) {
            if (parent == nullptr || FindNode(rows[i].key) != nullptr) continue;
            auto made = std::make_unique<Node>();
            node = made.get();
            node->row = rows[i];
            node->parent = parent;
            nodes_.emplace(rows[i].key, std::move(made));
        }
        if (parent->stays) {
            parent->wanted.push_back(node);
        } else {
            node->place = static_cast<int>(parent->children.size());
            parent->children.push_back(node);
        }
    }
}

void ColumnListModel::InsertMissing(Node* parent) {
    const std::vector<Node*> wanted = std::exchange(parent->wanted, {});
    for (std::size_t begin = 0; begin < wanted.size(); begin++) {
        if (wanted[begin]->stays) continue;
        std::size_t end = begin + 1;
        while (end < wanted.size() && !wanted[end]->stays)
            end++;
        beginInsertRows(IndexOf(parent, 0), static_cast<int>(begin), static_cast<int>(end) - 1);
        parent->children.insert(parent->children.begin() + static_cast<std::ptrdiff_t>(begin),
                                wanted.begin() + static_cast<std::ptrdiff_t>(begin),
                                wanted.begin() + static_cast<std::ptrdiff_t>(end));
        Renumber(*parent, begin);
        endInsertRows();
        begin = end;
    }
}

// One signal for each parent, however many rows of it differ.
void ColumnListModel::ChangeStaying(const std::vector<ColumnListRow>& rows,
                                    const std::vector<Node*>& nodes) {
    struct Area {
        Node* first;
        Node* last;
        Columns columns;
    };
    std::unordered_map<const Node*, Area> areas;
    const int count = columnCount({});
    for (std::size_t i = 0; i < nodes.size(); i++) {
        Node* const node = nodes[i];
        if (node == nullptr) continue;
        const Columns columns = Differing(node->row, rows[i], count);
        node->row = rows[i];
        if (columns.last < columns.first) continue;
        Area& area = areas.try_emplace(node->parent, Area{node, node, columns}).first->second;
        area.last = node;
        area.columns.first = std::min(area.columns.first, columns.first);
        area.columns.last = std::max(area.columns.last, columns.last);
    }
    for (const auto& [parent, area] : areas)
        emit dataChanged(IndexOf(area.first, area.columns.first),
                         IndexOf(area.last, area.columns.last));
}

void ColumnListModel::Change(const ColumnListRow& row) {
    if (Node* const node = FindNode(row.key)) ChangeStaying({row}, {node});
}

// --- What views ask ---

QModelIndex ColumnListModel::index(int row, int column, const QModelIndex& parent) const {
    const Node& node = parent.isValid() ? *NodeOf(parent) : root_;
    if (parent.column() > 0 || row < 0 || row >= static_cast<int>(node.children.size()) ||
        column < 0 || column >= columnCount({}))
        return {};
    return createIndex(row, column, node.children[static_cast<std::size_t>(row)]);
}

QModelIndex ColumnListModel::parent(const QModelIndex& child) const {
    return child.isValid() ? IndexOf(NodeOf(child)->parent, 0) : QModelIndex();
}

int ColumnListModel::rowCount(const QModelIndex& parent) const {
    if (parent.column() > 0) return 0;
    const Node& node = parent.isValid() ? *NodeOf(parent) : root_;
    return static_cast<int>(node.children.size());
}

int ColumnListModel::columnCount(const QModelIndex& /*parent*/) const {
    return static_cast<int>(titles_.size());
}

QVariant ColumnListModel::PictureOf(const Node& node, std::size_t column) {
    if (column >= node.row.cells.size() || node.row.cells[column].picture == nullptr) return {};
    QImage image = ToImage(node.row.cells[column].picture.get());
    image.setDevicePixelRatio(kPictureScale);
    return QPixmap::fromImage(std::move(image));
}

QVariant ColumnListModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid()) return {};
    const Node& node = *NodeOf(index);
    const auto column = static_cast<std::size_t>(index.column());
    switch (role) {
        case Qt::DisplayRole:
        case Qt::EditRole:
            return TextOf(node, index.column());
        case Qt::TextAlignmentRole:
            return QVariant((titles_[column].isRightAligned ? Qt::AlignRight : Qt::AlignLeft) |
                            Qt::AlignVCenter);
        case Qt::DecorationRole:
            if (QVariant picture = PictureOf(node, column); picture.isValid()) return picture;
            return column == 0 && node.row.isBranch ? QVariant(branchIcon_) : QVariant();
        case Qt::ToolTipRole:
        case Qt::AccessibleDescriptionRole:
            return ToText(node.row.tip);
        case Qt::FontRole: {
            if (!node.row.isMarked) return {};
            QFont font;
            font.setBold(true);
            return font;
        }
        default:
            return {};
    }
}

QVariant ColumnListModel::headerData(int section, Qt::Orientation direction, int role) const {
    if (direction != Qt::Horizontal || section < 0 || section >= columnCount({})) return {};
    const ColumnListTitle& title = titles_[static_cast<std::size_t>(section)];
    if (role == Qt::DisplayRole) return title.text;
    if (role == Qt::TextAlignmentRole)
        return QVariant((title.isRightAligned ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter);
    return {};
}

Qt::ItemFlags ColumnListModel::flags(const QModelIndex& index) const {
    if (!index.isValid()) return {};
    Qt::ItemFlags flags = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
    if (index.column() == 0 && NodeOf(index)->row.isEditable) flags |= Qt::ItemIsEditable;
    return flags;
}

bool ColumnListModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (!index.isValid() || role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable))
        return false;
    Node& node = *NodeOf(index);
    const QString text = value.toString().trimmed();
    if (text.isEmpty() || text == TextOf(node, 0)) return false;
    node.row.cells[0].text = text.toStdString();
    emit dataChanged(index, index);
    renamed_(node.row.key, text);
    return true;
}
