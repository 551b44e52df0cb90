#pragma once

#include <QList>

#include <type_traits>

/// A small intrusive tree: each node holds one attribute, a link to its parent,
/// to its first son and to its next brother, a son count, an integer id and
/// four flags (enabled, auto-delete, expanded, visible).
///
/// Sons form a singly linked list. Attaching a node without a reference node
/// (the constructor, setParent, and the fallbacks of the insert operations)
/// puts it at the HEAD of its parent's sons, so sons created one after the
/// other stand in reverse order of creation. Users rely on that order.
///
/// A node owns its sons; it owns its attribute only when auto-delete is set
/// (the attribute is then deleted through its virtual destructor).
template <typename T>
class TTree
{
public:
    explicit TTree(TTree* parent = nullptr, int id = -1)
        : m_nodeId(id)
    {
        if (parent) {
            m_parent = parent;
            m_brother = parent->m_firstSon;
            parent->m_firstSon = this;
            ++parent->m_nbSons;
            m_autoDelete = parent->m_autoDelete;
        }
    }

    ~TTree()
    {
        if (m_autoDelete)
            deleteAttribute();
        TTree* son = m_firstSon;
        while (son) {
            TTree* next = son->m_brother;
            delete son;
            son = next;
        }
        if (m_parent) {
            --m_parent->m_nbSons;
            unlinkFromParent();
        }
    }

    /// Member-wise copy, links included: no relinking and no deep copy.
    TTree& operator=(const TTree& other) = default;

    /// Deep copy of the structure sharing the attributes. The copy is always
    /// visible and never auto-deletes, so it cannot delete items the source owns;
    /// its sons stand in the reverse order of the source's at every level.
    TTree* clone() const
    {
        TTree* copy = new TTree();
        copy->attribute = attribute;
        copy->m_nodeId = m_nodeId;
        copy->m_enabled = m_enabled;
        copy->m_expanded = m_expanded;
        // Son by son in list order, each attached at the head of the copy.
        const TTree* son = m_firstSon;
        for (int i = 0; i < m_nbSons && son; ++i, son = son->m_brother)
            son->clone()->setParent(copy);
        return copy;
    }

    // Navigation ------------------------------------------------------------

    TTree* getParent() const { return m_parent; }

    TTree* getRoot() const
    {
        const TTree* node = this;
        while (node->m_parent)
            node = node->m_parent;
        return const_cast<TTree*>(node);
    }

    TTree* getFirstSon() const { return m_nbSons < 1 ? nullptr : m_firstSon; }
    TTree* getBrother() const { return m_brother; }

    TTree* getSon(int i) const
    {
        // "count below i + 1", written so that i = INT_MAX does not overflow.
        if (i >= m_nbSons)
            return nullptr;
        TTree* son = m_firstSon;
        // A negative index passes the count test and walks off the chain.
        for (int step = 0; son && (i < 0 || step < i); ++step)
            son = son->m_brother;
        return son;
    }

    QList<TTree*> getSons() const
    {
        QList<TTree*> sons;
        if (m_nbSons < 1)
            return sons;
        for (TTree* son = m_firstSon; son; son = son->m_brother)
            sons.append(son);
        return sons;
    }

    QList<T> getSonsAttributes() const
    {
        QList<T> attributes;
        if (m_nbSons < 1)
            return attributes;
        for (TTree* son = m_firstSon; son; son = son->m_brother)
            attributes.append(son->attribute);
        return attributes;
    }

    int getNbSons() const { return m_nbSons; }

    int getNbItems() const
    {
        int count = 1;
        for (const TTree* son = m_firstSon; son; son = son->m_brother)
            count += son->getNbItems();
        return count;
    }

    int getNbSubLevels() const
    {
        int deepest = 0;
        for (const TTree* son = m_firstSon; son; son = son->m_brother)
            deepest = qMax(deepest, son->getNbSubLevels());
        return deepest + 1;
    }

    /// First node of this subtree, in pre-order, whose id is `id`.
    const TTree* getNode(int id) const
    {
        if (m_nodeId == id)
            return this;
        for (const TTree* son = m_firstSon; son; son = son->m_brother) {
            if (const TTree* found = son->getNode(id))
                return found;
        }
        return nullptr;
    }

    /// The node after `node` in a pre-order walk of the WHOLE tree. The walk is
    /// not bounded by the node this is called on: from the last node of a
    /// subtree it goes on into the rest of the tree. Callers bound it themselves.
    TTree* getNextNode(TTree* node) const
    {
        if (!node)
            return nullptr;
        if (node->m_firstSon)
            return node->m_firstSon;
        if (node->m_brother)
            return node->m_brother;
        for (TTree* p = node->m_parent; p; p = p->m_parent) {
            if (p->m_brother)
                return p->m_brother;
        }
        return nullptr;
    }

    int getNodeId() const { return m_nodeId; }

    /// True when the subtree is a single chain (a leaf is one).
    bool getUniqueSons() const
    {
        const TTree* node = this;
        while (node->m_nbSons == 1)
            node = node->m_firstSon;
        return node->m_firstSon == nullptr;
    }

    // Flags -----------------------------------------------------------------

    void setEnable(bool enable) { m_enabled = enable; }
    bool getEnable() const { return m_enabled; }

    /// AND of the ancestors' enabled flags, the node's own excluded.
    bool getParentsEnable() const
    {
        for (const TTree* p = m_parent; p; p = p->m_parent) {
            if (!p->m_enabled)
                return false;
        }
        return true;
    }

    /// AND of the direct sons' enabled flags; true without sons.
    bool getSonsEnable() const
    {
        for (const TTree* son = m_firstSon; son; son = son->m_brother) {
            if (!son->m_enabled)
                return false;
        }
        return true;
    }

    /// Sets the direct sons (and with `recursive` the whole subtree below);
    /// the node's own flag never changes.
    void setSonsEnable(bool enable, bool recursive)
    {
        for (TTree* son = m_firstSon; son; son = son->m_brother) {
            if (recursive)
                son->setSonsEnable(enable, recursive);
            son->m_enabled = enable;
        }
    }

    void setExpanded(bool expanded) { m_expanded = expanded; }
    bool isExpanded() const { return m_expanded; }
    void setVisible(bool visible) { m_visible = visible; }
    bool isVisible() const { return m_visible; }
    void setAutoDelete(bool autoDelete) { m_autoDelete = autoDelete; }
    bool isAutoDelete() const { return m_autoDelete; }
    void setNodeId(int id) { m_nodeId = id; }

    // Structure changes -----------------------------------------------------

    /// Moves the node to the head of `newParent`'s sons (null detaches it).
    /// Unlike the constructor, the auto-delete flag is not inherited.
    void setParent(TTree* newParent)
    {
        if (newParent == m_parent)
            return;
        if (m_parent) {
            unlinkFromParent();
            --m_parent->m_nbSons;
        }
        m_parent = newParent;
        if (!newParent)
            return; // a detached root keeps its brother link as it was
        m_brother = newParent->m_firstSon;
        newParent->m_firstSon = this;
        ++newParent->m_nbSons;
    }

    /// Links the detached `node` as the son that follows `reference`.
    void insertAfter(TTree* node, TTree* reference)
    {
        if (!node || !reference)
            return;
        if (!m_firstSon) {
            node->setParent(this);
            return;
        }
        for (TTree* son = m_firstSon; son; son = son->m_brother) {
            if (son == reference) {
                node->m_brother = reference->m_brother;
                reference->m_brother = node;
                node->m_parent = this;
                ++m_nbSons;
                return;
            }
        }
    }

    /// Links the detached `node` as the son that precedes `reference`.
    void insertBefore(TTree* node, TTree* reference)
    {
        if (!node || !reference)
            return;
        if (!m_firstSon) {
            node->setParent(this);
            return;
        }
        TTree* previous = nullptr;
        for (TTree* son = m_firstSon; son; previous = son, son = son->m_brother) {
            if (son != reference)
                continue;
            if (!previous) {
                node->setParent(this);
            } else {
                previous->m_brother = node;
                node->m_brother = reference;
                node->m_parent = this;
                ++m_nbSons;
            }
            return;
        }
    }

    /// The payload; read and written directly by the tree's users.
    T attribute{};

private:
    void deleteAttribute()
    {
        if constexpr (std::is_pointer_v<T>)
            delete attribute; // null is a no-op
    }

    void unlinkFromParent()
    {
        if (m_parent->m_firstSon == this) {
            m_parent->m_firstSon = m_brother;
            return;
        }
        for (TTree* son = m_parent->m_firstSon; son; son = son->m_brother) {
            if (son->m_brother == this) {
                son->m_brother = m_brother;
                return;
            }
        }
    }

    TTree* m_parent = nullptr;
    TTree* m_firstSon = nullptr;
    TTree* m_brother = nullptr;
    int m_nbSons = 0;
    int m_nodeId;
    bool m_enabled = true;
    bool m_autoDelete = false;
    bool m_expanded = false;
    bool m_visible = true;
};
