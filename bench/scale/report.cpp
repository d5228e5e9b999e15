#include "scale/report.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

#include "support/number_text.h"

namespace orv::bench {
namespace {

template <typename Key>
std::vector<Key> InOrderMet(const std::vector<Figure>& figures, Key Figure::*key) {
  std::vector<Key> met;
  for (const Figure& figure : figures) {
    if (std::find(met.begin(), met.end(), figure.*key) == met.end()) met.push_back(figure.*key);
  }
  return met;
}

const Figure& At(const std::vector<Figure>& figures, const std::string& curve, double x) {
  return *std::find_if(figures.begin(), figures.end(),
                       [&](const Figure& f) { return f.curve == curve && f.x == x; });
}

nlohmann::ordered_json AsJson(const Axis& axis) {
  return {{"title", axis.title}, {"logarithmic", axis.logarithmic}};
}

nlohmann::ordered_json AsJson(const MeasuredPlot& measured) {
  const Plot& plot = measured.plot;
  nlohmann::ordered_json curves = nlohmann::ordered_json::array();
  for (const std::string& curve : InOrderMet(measured.figures, &Figure::curve)) {
    nlohmann::ordered_json points = nlohmann::ordered_json::array();
    for (const Figure& figure : measured.figures) {
      if (figure.curve != curve) continue;
      points.push_back({{"x", figure.x},
                        {"median", figure.median},
                        {"least", figure.least},
                        {"greatest", figure.greatest}});
    }
    curves.push_back({{"name", curve}, {"points", std::move(points)}});
  }
  return {{"name", plot.name},
          {"title", plot.title},
          {"x", AsJson(plot.x)},
          {"y", AsJson(plot.y)},
          {"curves", std::move(curves)}};
}

}  // namespace

void PrintTable(std::FILE* out, const MeasuredPlot& measured) {
  const std::vector<std::string> curves = InOrderMet(measured.figures, &Figure::curve);
  std::fprintf(out, "%s, %s:\n\n| %s |", measured.plot.title.c_str(), measured.plot.y.title.c_str(),
               measured.plot.x.title.c_str());
  for (const std::string& curve : curves) std::fprintf(out, " %s |", curve.c_str());
  std::fprintf(out, "\n|---:|");
  for (std::size_t i = 0; i < curves.size(); ++i) std::fprintf(out, "---:|");
  for (double x : InOrderMet(measured.figures, &Figure::x)) {
    std::fprintf(out, "\n| %s |", Grouped(std::llround(x)).c_str());
    for (const std::string& curve : curves) {
      std::fprintf(out, " %s |", Rounded(At(measured.figures, curve, x).median).c_str());
    }
  }
  std::fprintf(out, "\n\n");
  std::fflush(out);
}

void WriteJson(const std::string& file, const std::vector<MeasuredPlot>& plots) {
  nlohmann::ordered_json list = nlohmann::ordered_json::array();
  for (const MeasuredPlot& measured : plots) list.push_back(AsJson(measured));
  std::ofstream out(file);
  out << nlohmann::ordered_json{{"plots", std::move(list)}}.dump(2) << '\n';
  if (!out.flush()) throw std::runtime_error("cannot write " + file);
}

}  // namespace orv::bench
