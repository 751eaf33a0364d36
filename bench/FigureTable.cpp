#include "bench/FigureTable.hpp"

#include <iomanip>
#include <iostream>
#include <sstream>

namespace tessaly {

namespace {

std::string text(double value)
{
    std::ostringstream out;
    out << std::setprecision(4) << value;
    return out.str();
}

} // namespace

void FigureTable::atMost(const std::string &name, double value, double bar)
{
    print(name, value, "<= " + text(bar), value <= bar);
}

void FigureTable::atLeast(const std::string &name, double value, double bar)
{
    print(name, value, ">= " + text(bar), value >= bar);
}

void FigureTable::time(const std::string &workload)
{
    plain(workload + ", best, ms", m_times.best(workload));
    plain(workload + ", median, ms", m_times.median(workload));
}

void FigureTable::ratioAtMost(const std::string &above, const std::string &below, double bar)
{
    const std::string name = above + " / " + below;
    atMost(name + ", best", m_times.best(above) / m_times.best(below), bar);
    atMost(name + ", median", m_times.median(above) / m_times.median(below), bar);
}

void FigureTable::ratioAtLeast(const std::string &above, const std::string &below, double bar)
{
    const std::string name = above + " / " + below;
    atLeast(name + ", best", m_times.best(above) / m_times.best(below), bar);
    atLeast(name + ", median", m_times.median(above) / m_times.median(below), bar);
}

void FigureTable::print(const std::string &name, double value, const std::string &bar,
                        bool isEnough)
{
    std::cout << name << '\t' << text(value) << '\t' << bar << '\t' << (isEnough ? "ok" : "short")
              << std::endl;
    m_isShort = m_isShort || !isEnough;
}

} // namespace tessaly
