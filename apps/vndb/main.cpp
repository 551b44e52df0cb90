#include "channelcommand.h"
#include "cliapplication.h"
#include "democommand.h"
#include "diagramcommand.h"
#include "eiccommand.h"
#include "identifycommand.h"
#include "peakscommand.h"
#include "exportcommand.h"
#include "importcommand.h"
#include "paramscommand.h"
#include "plotcommand.h"
#include "projectcommand.h"
#include "refcommand.h"
#include "selectcommand.h"
#include "spectrumcommand.h"
#include "ticcommand.h"
#include "channelcommand.h"

#include <tapplicationdata.h>

#include <QGuiApplication>

namespace {
// Qt's own chatter (platform plugins, fonts) and the libraries' developer
// diagnostics (the "vn.*" logging categories) are not for the user of a
// command line tool; set VNDB_DEBUG to see them, with their category.
void quietQt(QtMsgType type, const QMessageLogContext& context, const QString& message)
{
    if (type == QtFatalMsg || qEnvironmentVariableIsSet("VNDB_DEBUG"))
        std::fprintf(stderr, "%s: %s\n", context.category ? context.category : "qt", qPrintable(message));
}
} // namespace

int main(int argc, char** argv)
{
    // Pictures are drawn off screen: no display is needed or used.
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qInstallMessageHandler(quietQt);
    QGuiApplication app(argc, argv);
    QCoreApplication::setApplicationName(QStringLiteral("vndb"));
    QCoreApplication::setApplicationVersion(QStringLiteral(VNDB_VERSION));
    TApplicationData applicationData;

    CliApplication cli;
    cli.addCommand(new DemoCommand);
    cli.addCommand(new ProjectCommand);
    cli.addCommand(new ImportCommand);
    cli.addCommand(new ExportCommand);
    cli.addCommand(new TicCommand);
    cli.addCommand(new ChannelCommand);
    cli.addCommand(new EicCommand);
    cli.addCommand(new SpectrumCommand);
    cli.addCommand(new PeaksCommand);
    cli.addCommand(new IdentifyCommand);
    cli.addCommand(new PlotCommand);
    cli.addCommand(new RefCommand);
    cli.addCommand(new SelectCommand);
    cli.addCommand(new ParamsCommand);
    cli.addCommand(new DiagramCommand);
    return cli.exec(QCoreApplication::arguments().mid(1));
}
