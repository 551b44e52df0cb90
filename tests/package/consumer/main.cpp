// A module of the application as it would use the installed library.
#include <ttree.h>
#include <txmlmethod.h>
#include <vndatabaseinfo.h>

#include <QDomDocument>
#include <cstdio>

struct Payload
{
    virtual ~Payload() = default;
    int value = 0;
};

int main()
{
    TTree<Payload*> root;
    root.setAutoDelete(true);
    for (int i = 0; i < 3; ++i)
        (new TTree<Payload*>(&root, i))->attribute = new Payload;
    if (root.getNbItems() != 4 || root.getSon(0)->getNodeId() != 2)
        return 1;

    QDomDocument document;
    QDomElement top = document.createElement(QStringLiteral("consumer"));
    document.appendChild(top);
    TXMLMethod::addToElement(top, QStringLiteral("Version"), QStringLiteral("2.0"));
    if (TXMLMethod::getInfoString(top, QStringLiteral("Version")) != QLatin1String("2.0"))
        return 2;
    std::printf("consumer linked VNDatabase %s\n", qPrintable(VNDatabaseInfo::version()));
    return 0;
}
