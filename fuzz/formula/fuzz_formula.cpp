// Feeds arbitrary text to the parameters' formula reader, over the short
// names the sample content uses, and evaluates whatever it accepts.
#include <tformula.h>

#include <QHash>
#include <QString>
#include <QStringList>

#include <cstddef>
#include <cmath>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QStringList names = {"Pr", "Ph", "P", "nC17", "nC18", "2-MP", "3-MP", "1-MP", "9-MP", "Ts", "Tm"};
    static const QHash<QString, double> values = {{"Pr", 8.0},   {"Ph", 4.0},   {"P", 10.0}, {"nC17", 0.0},
                                                  {"2-MP", 3.0}, {"3-MP", 2.0}, {"Ts", 1.0}, {"Tm", -1.0}};
    const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data), int(size));
    const TFormula formula = TFormula::parse(text, names);
    const TFormula::Result result = formula.evaluate(values);
    // A value is always a finite number, and a refusal always says why.
    if (result.ok == result.reason.isEmpty() && (!result.ok || std::isfinite(result.value)))
        return 0;
    __builtin_trap();
}
