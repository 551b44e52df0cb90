#include <ttree.h>

#include <QtTest>

#include <climits>
#include <memory>

namespace {

// A payload with a virtual destructor that counts how many were deleted.
struct Item
{
    explicit Item(int* deaths)
        : m_deaths(deaths)
    { }
    virtual ~Item() { ++*m_deaths; }
    int* m_deaths;
};

struct DerivedItem : Item
{
    using Item::Item;
    ~DerivedItem() override { ++*m_deaths; } // counted twice: base and derived
};

using Node = TTree<Item*>;

QList<int> sonIds(const Node& node)
{
    QList<int> result;
    for (const Node* son : node.getSons())
        result.append(son->getNodeId());
    return result;
}

// Every son list is consistent: counts equal lengths, parents point back.
bool consistent(const Node* node)
{
    int length = 0;
    for (const Node* son = node->getFirstSon(); son; son = son->getBrother()) {
        ++length;
        if (son->getParent() != node || !consistent(son))
            return false;
    }
    return length == node->getNbSons();
}

// The pre-order walk from `start` through getNextNode until null.
QList<int> walk(const Node& caller, Node* start)
{
    QList<int> visited;
    for (Node* node = start; node; node = caller.getNextNode(node))
        visited.append(node->getNodeId());
    return visited;
}

} // namespace

class TestTree : public QObject
{
    Q_OBJECT

private slots:
    // Sons made one after the other stand in reverse order of creation;
    // destroying one unlinks it wherever it stands in the list.
    void sonOrderAndDestruction()
    {
        Node root;
        Node* a = new Node(&root, 1);
        Node* b = new Node(&root, 2);
        Node* c = new Node(&root, 3);
        new Node(b, 20);
        QCOMPARE(sonIds(root), QList<int>({3, 2, 1}));
        QCOMPARE(QList<Node*>({root.getSon(0), root.getSon(1), root.getSon(2)}), QList<Node*>({c, b, a}));
        QCOMPARE(a->getRoot(), &root);
        QVERIFY(consistent(&root));
        // Indices past either end give nothing.
        for (int index : {3, INT_MAX, -1, INT_MIN})
            QCOMPARE(root.getSon(index), nullptr);
        QCOMPARE(Node().getSon(0), nullptr);

        delete b; // middle, with a son of its own
        QCOMPARE(sonIds(root), QList<int>({3, 1}));
        delete c; // first
        QCOMPARE(sonIds(root), QList<int>({1}));
        delete a; // last and only
        QCOMPARE(root.getFirstSon(), nullptr);
        QVERIFY(consistent(&root));
    }

    // Counts, attribute lists, chains and the search by id over one tree.
    // The search is pre-order, the node itself first; the first match wins;
    // ids need not be unique.
    void countsAndSearch()
    {
        int deaths = 0;
        Item x(&deaths), y(&deaths);
        Node root(nullptr, 0);
        Node* a = new Node(&root, 1);
        a->attribute = &x;
        Node* b = new Node(&root, 7);
        b->attribute = &y;
        Node* a1 = new Node(a, 7);
        new Node(a1, 9);
        QCOMPARE(root.getSonsAttributes(), QList<Item*>({&y, &x}));
        QCOMPARE(Node().getNbItems(), 1);
        QCOMPARE(Node().getNbSubLevels(), 1);
        QCOMPARE(root.getNbItems(), 5);
        QCOMPARE(root.getNbSubLevels(), 4);
        QCOMPARE(a->getNbItems(), 3);
        QCOMPARE(b->getNbSubLevels(), 1);

        // List order is b, a: b (id 7) comes before a's son a1 (id 7).
        QCOMPARE(root.getNode(7), b);
        QCOMPARE(a->getNode(7), a1);
        QCOMPARE(root.getNode(0), &root);
        QCOMPARE(root.getNode(9)->getParent(), a1);
        QCOMPARE(root.getNode(42), nullptr);
        QCOMPARE(b->getNode(9), nullptr);
        a1->setNodeId(-1);
        QCOMPARE(root.getNode(-1), a1);

        QVERIFY(Node().getUniqueSons());
        QVERIFY(a->getUniqueSons()); // a, a1, 9: a chain
        QVERIFY(!root.getUniqueSons());
        new Node(a1, 10);
        QVERIFY(!a->getUniqueSons()); // the fork is two levels down
    }

    void enabledFlags()
    {
        Node root;
        Node* son = new Node(&root);
        Node* other = new Node(&root);
        Node* grandson = new Node(son);
        Node* great = new Node(grandson);

        QVERIFY(Node().getSonsEnable() && Node().getParentsEnable());

        const auto enabled = [&] {
            return QList<bool>(
                {root.getEnable(), son->getEnable(), other->getEnable(), grandson->getEnable(), great->getEnable()});
        };
        son->setSonsEnable(false, false); // direct sons only
        QCOMPARE(enabled(), QList<bool>({true, true, true, false, true}));
        QVERIFY(!son->getSonsEnable() && root.getSonsEnable());
        root.setSonsEnable(false, false); // grandsons untouched without recursion
        QCOMPARE(enabled(), QList<bool>({true, false, false, false, true}));
        QVERIFY(!great->getParentsEnable() && !root.getSonsEnable());
        root.setSonsEnable(true, true);
        QCOMPARE(enabled(), QList<bool>({true, true, true, true, true}));
        QVERIFY(great->getParentsEnable());
        root.setSonsEnable(false, true);
        QCOMPARE(enabled(), QList<bool>({true, false, false, false, false}));

        // The node's own flag does not count in getParentsEnable.
        root.setSonsEnable(true, true);
        great->setEnable(false);
        QVERIFY(great->getParentsEnable());
        grandson->setEnable(false);
        QVERIFY(!great->getParentsEnable());
        QVERIFY(grandson->getParentsEnable());
    }

    // The tree deletes its attributes only under auto-delete, which sons
    // inherit from their parent at construction.
    void autoDelete()
    {
        int deaths = 0;
        {
            Node root;
            root.setAutoDelete(true);
            Node* son = new Node(&root);
            QVERIFY(son->isAutoDelete());
            son->attribute = new DerivedItem(&deaths);
            Node* grandson = new Node(son);
            grandson->attribute = new Item(&deaths);
            root.attribute = new Item(&deaths);
            new Node(son); // null attribute: nothing to delete
        }
        QCOMPARE(deaths, 4); // 2 for the derived item, one each for the others

        deaths = 0;
        Item kept(&deaths);
        {
            Node root;
            Node* son = new Node(&root);
            son->attribute = &kept;
            root.setAutoDelete(true); // set after the son was made: not inherited
            QVERIFY(!son->isAutoDelete());
        }
        QCOMPARE(deaths, 0);
    }

    void relinking()
    {
        Node left(nullptr, 100);
        Node right(nullptr, 200);
        Node* a = new Node(&left, 1);
        Node* b = new Node(&left, 2);
        Node* c = new Node(&left, 3); // left: 3 2 1
        new Node(&right, 4);

        b->setParent(&right); // from the middle
        QCOMPARE(sonIds(left), QList<int>({3, 1}));
        QCOMPARE(sonIds(right), QList<int>({2, 4}));

        c->setParent(&right); // from the head, to the head
        QCOMPARE(sonIds(left), QList<int>({1}));
        QCOMPARE(sonIds(right), QList<int>({3, 2, 4}));

        c->setParent(&right); // same parent: nothing moves
        QCOMPARE(sonIds(right), QList<int>({3, 2, 4}));

        a->setParent(nullptr); // detached; the caller owns it now
        std::unique_ptr<Node> detached(a);
        QCOMPARE(left.getNbSons(), 0);
        QCOMPARE(a->getRoot(), a);

        // Moving a node moves its subtree; auto-delete is not inherited here.
        right.setAutoDelete(true);
        Node* sub = new Node(a, 5);
        detached.release()->setParent(&right);
        QVERIFY(!a->isAutoDelete());
        QCOMPARE(sonIds(right), QList<int>({1, 3, 2, 4}));
        QCOMPARE(sub->getRoot(), &right);
        QCOMPARE(right.getNbItems(), 6);
        QVERIFY(consistent(&left) && consistent(&right));

        // A detached root keeps its old brother link, which must be ignored.
        b->setParent(nullptr);
        std::unique_ptr<Node> kept(b);
        QCOMPARE(sonIds(right), QList<int>({1, 3, 4}));
        QVERIFY(consistent(&right));
    }

    void insertAfterAndBefore()
    {
        Node root;
        Node* a = new Node(&root, 1);
        Node* b = new Node(&root, 2); // 2 1
        root.insertAfter(new Node(nullptr, 10), b);
        root.insertAfter(new Node(nullptr, 11), a); // after the last
        QCOMPARE(sonIds(root), QList<int>({2, 10, 1, 11}));
        root.insertBefore(new Node(nullptr, 12), a);
        root.insertBefore(new Node(nullptr, 13), b); // before the first: new head
        QCOMPARE(sonIds(root), QList<int>({13, 2, 10, 12, 1, 11}));
        QVERIFY(consistent(&root));

        // Refusals: null arguments, a reference that is not a son.
        Node stranger(nullptr, 50);
        Node* outsider = new Node(&stranger);
        auto loose = std::make_unique<Node>(nullptr, 20);
        root.insertAfter(nullptr, a);
        root.insertBefore(nullptr, a);
        for (Node* reference : {static_cast<Node*>(nullptr), outsider}) {
            root.insertAfter(loose.get(), reference);
            root.insertBefore(loose.get(), reference);
        }
        root.insertAfter(loose.get(), &root);
        QCOMPARE(sonIds(root), QList<int>({13, 2, 10, 12, 1, 11}));
        QCOMPARE(loose->getParent(), nullptr);

        // Without sons the node goes in as the first one, whatever the reference.
        Node emptyAfter, emptyBefore;
        auto other = std::make_unique<Node>(nullptr, 21);
        emptyAfter.insertAfter(loose.get(), outsider);
        emptyBefore.insertBefore(other.get(), outsider);
        QCOMPARE(emptyAfter.getFirstSon(), loose.release());
        QCOMPARE(emptyBefore.getFirstSon(), other.release());
        QVERIFY(consistent(&emptyAfter) && consistent(&emptyBefore));
    }

    // The clone shares the attributes, reverses every son list, is always
    // visible and never deletes what the source owns.
    void cloneOrderAndOwnership()
    {
        int deaths = 0;
        Node source(nullptr, 0);
        source.setAutoDelete(true);
        source.attribute = new Item(&deaths);
        Node* x = new Node(&source, 1);
        Node* y = new Node(&source, 2); // source sons: 2 1
        x->attribute = new Item(&deaths);
        y->attribute = new Item(&deaths);
        new Node(x, 11);
        new Node(x, 12); // x's sons: 12 11
        source.setVisible(false);
        source.setExpanded(true);
        x->setEnable(false);

        Node* copy = source.clone();
        QCOMPARE(copy->getParent(), nullptr);
        QCOMPARE(copy->attribute, source.attribute);
        QVERIFY(copy->isVisible() && copy->isExpanded() && !copy->isAutoDelete());
        QCOMPARE(sonIds(*copy), QList<int>({1, 2}));
        Node* xCopy = copy->getSon(0);
        QVERIFY(xCopy != x);
        QCOMPARE(xCopy->attribute, x->attribute);
        QVERIFY(!xCopy->getEnable() && !xCopy->isAutoDelete());
        QCOMPARE(sonIds(*xCopy), QList<int>({11, 12}));
        QVERIFY(consistent(copy));

        delete copy;
        QCOMPARE(deaths, 0);
        QCOMPARE(sonIds(source), QList<int>({2, 1})); // the source is untouched
    }

    // The successor walk is not bounded by the node it is called on.
    void preOrderSuccessor()
    {
        //  0
        //  +- 1
        //  |  +- 11
        //  |  |  +- 111
        //  |  +- 12
        //  +- 2
        //     +- 21
        Node root(nullptr, 0);
        Node* n2 = new Node(&root, 2);
        Node* n1 = new Node(&root, 1);
        new Node(n2, 21);
        new Node(n1, 12);
        Node* n11 = new Node(n1, 11);
        Node* n111 = new Node(n11, 111);

        QCOMPARE(walk(root, &root), QList<int>({0, 1, 11, 111, 12, 2, 21}));
        // Started inside subtree 1, from subtree 1's own node: runs on into 2.
        QCOMPARE(walk(*n1, n1), QList<int>({1, 11, 111, 12, 2, 21}));
        // From a deep last son: the next brother of the nearest ancestor with one.
        QCOMPARE(n11->getNextNode(n111)->getNodeId(), 12);
        QCOMPARE(n1->getNextNode(n1->getSon(1)), n2);           // from 12, the last of subtree 1
        QCOMPARE(root.getNextNode(n2->getFirstSon()), nullptr); // the last node of the whole tree
        // The caller plays no part: a stranger tree's node gives the same answers.
        Node stranger;
        QCOMPARE(stranger.getNextNode(n111)->getNodeId(), 12);
        QCOMPARE(stranger.getNextNode(nullptr), nullptr);
    }
};

QTEST_GUILESS_MAIN(TestTree)
#include "tst_ttree.moc"
