// The rows of a column list, as the toolkit's views want them: a tree that takes over a new set of
// rows by changing only what differs, so that a view keeps its place, its selection and an editor
// that is open. Nothing here recurses once per level. Owned by the list's part; server's thread.
#pragma once

#include <QAbstractItemModel>
#include <QIcon>
#include <functional>
#include <memory>
#include <unordered_map>
#include <vector>

#include "Platform/Interface/Lists/BColumnListView.h"

struct ColumnListTitle {
    QString text;
    bool isRightAligned = false;
};

class ColumnListModel : public QAbstractItemModel {
public:
    using Renamed = std::function<void(int64 key, const QString& text)>;

    // `renamed` is called when the user has given a row another name.
    ColumnListModel(std::vector<ColumnListTitle> titles, Renamed renamed);
    ~ColumnListModel() override;

    // Parents before their children; a row whose parent is not among those before it, or whose key
    // was there already, is dropped. True if rows came, went or moved.
    bool Show(const std::vector<ColumnListRow>& rows);
    // The same without looking for what stays: for rows in another order.
    void Reset(const std::vector<ColumnListRow>& rows);
    void Change(const ColumnListRow& row);

    // Invalid if there is no such row.
    [[nodiscard]] QModelIndex IndexOf(int64 key) const;
    // kNoKey for none.
    [[nodiscard]] static int64 KeyOf(const QModelIndex& index);
    // Calls it with every row that others hang below.
    void ForEachParent(const std::function<void(int64 key, const QModelIndex&)>& visit) const;

    [[nodiscard]] QModelIndex index(int row, int column, const QModelIndex& parent) const override;
    [[nodiscard]] QModelIndex parent(const QModelIndex& child) const override;
    using QObject::parent;
    [[nodiscard]] int rowCount(const QModelIndex& parent) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent) const override;
    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation direction,
                                      int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

private:
    struct Node {
        ColumnListRow row;
        Node* parent = nullptr;  // null for the invisible root only
        std::vector<Node*> children;
        int place = 0;  // among the parent's children
        // During an update: whether it stays where it is, the place of its last child found to
        // stay, and the children that it is to have.
        bool stays = false;
        int lastStaying = -1;
        std::vector<Node*> wanted;
    };

    [[nodiscard]] static Node* NodeOf(const QModelIndex& index);
    [[nodiscard]] Node* FindNode(int64 key) const;
    [[nodiscard]] Node* FindParent(const ColumnListRow& row);
    [[nodiscard]] QModelIndex IndexOf(const Node* node, int column) const;
    [[nodiscard]] static QString TextOf(const Node& node, int column);
    [[nodiscard]] static QVariant PictureOf(const Node& node, std::size_t column);
    static void Renumber(const Node& parent, std::size_t from);

    // What each row is now: a node that stays, or null. `cuts`: in how many pieces rows would be
    // taken out and put in.
    std::vector<Node*> FindStaying(const std::vector<ColumnListRow>& rows, int* cuts);
    void RemoveOthers();
    void MakeMissing(const std::vector<ColumnListRow>& rows, const std::vector<Node*>& nodes);
    void InsertMissing(Node* parent);
    void ChangeStaying(const std::vector<ColumnListRow>& rows, const std::vector<Node*>& nodes);

    const std::vector<ColumnListTitle> titles_;
    const Renamed renamed_;
    const QIcon branchIcon_;
    Node root_;
    std::unordered_map<int64, std::unique_ptr<Node>> nodes_;
};
