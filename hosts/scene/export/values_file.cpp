#include "export/values_file.h"

#include <array>
#include <cmath>

#include "export/file_ending.h"
#include "format/exact_text.h"
#include "format/refinement.h"

namespace voxam::inline files {

namespace {

std::vector<std::uint8_t> bytesOf(const std::string& text) { return {text.begin(), text.end()}; }

std::string number(double value) { return exactText(static_cast<float>(value)); }

/// Elements of the design and load cases, in the units of the files.
class Values {
public:
    explicit Values(const AnalysedDesign& source)
        : analysed(source),
          width(source.design.width),
          height(source.design.height),
          edge(source.elementSize / refinementOf(source.design, source.scene)) {}

    const std::vector<int>& cases() const { return analysed.scene.loadCasesInUse; }
    const PlateState& state(int loadCase) const {
        return analysed.states[static_cast<std::size_t>(loadCase)];
    }
    double density(int x, int y) const { return analysed.design.at(x, y); }

    /// The analysis has elements with an edge of 1.
    Stress stress(int loadCase, int x, int y) const {
        const Stress found = state(loadCase).stress(x, y);
        return {found.x / edge, found.y / edge, found.shear / edge};
    }

private:
    const AnalysedDesign& analysed;

public:
    const int width;
    const int height;
    const double edge;
};

std::string suffix(const Values& values, int loadCase) {
    return values.cases().size() > 1 ? "_" + std::to_string(loadCase) : "";
}

/// A DataArray of plain numbers. `valueAt` appends those of a place; rows run from the bottom.
template <typename ValueAt>
std::string dataArray(const std::string& name, int components, int columns, int rows,
                      ValueAt valueAt) {
    std::string text = R"(        <DataArray type="Float32" Name=")" + name +
                       R"(" NumberOfComponents=")" + std::to_string(components) +
                       "\" format=\"ascii\">\n";
    for (int y = rows - 1; y >= 0; --y) {
        for (int x = 0; x < columns; ++x) text += (x > 0 ? " " : "") + valueAt(x, y);
        text += '\n';
    }
    return text + "        </DataArray>\n";
}

std::string vector(double x, double y, double z) {
    return number(x) + ' ' + number(y) + ' ' + number(z);
}

std::string cellArrays(const Values& values) {
    const int width = values.width;
    const int height = values.height;
    std::string text = dataArray("density", 1, width, height,
                                 [&](int x, int y) { return number(values.density(x, y)); });
    for (const int loadCase : values.cases()) {
        const std::string end = suffix(values, loadCase);
        text += dataArray("energy" + end, 1, width, height, [&](int x, int y) {
            return number(values.state(loadCase).energy(x, y));
        });
        text += dataArray("stress" + end, 3, width, height, [&](int x, int y) {
            const Stress stress = values.stress(loadCase, x, y);
            return vector(stress.x, stress.y, -stress.shear);
        });
        text += dataArray("von_mises" + end, 1, width, height, [&](int x, int y) {
            return number(values.stress(loadCase, x, y).vonMises());
        });
    }
    return text;
}

std::string pointArrays(const Values& values) {
    std::string text;
    for (const int loadCase : values.cases())
        text += dataArray("displacement" + suffix(values, loadCase), 3, values.width + 1,
                          values.height + 1, [&](int x, int y) {
                              const double right = values.state(loadCase).displacementX(x, y);
                              const double down = values.state(loadCase).displacementY(x, y);
                              return std::isnan(right) ? "0 0 0" : vector(right, -down, 0);
                          });
    return text;
}

}  // namespace

std::vector<std::uint8_t> encodeElementsCsv(const AnalysedDesign& analysed) {
    const Values values(analysed);
    std::string text = "x,y,density";
    for (const int loadCase : values.cases())
        for (const char* name : {"energy", "stress_x", "stress_y", "shear", "von_mises"})
            text += "," + (name + suffix(values, loadCase));
    text += '\n';
    for (int y = 0; y < values.height; ++y)
        for (int x = 0; x < values.width; ++x) {
            text += number((x + 0.5) * values.edge) + ',' + number((y + 0.5) * values.edge) + ',' +
                    number(values.density(x, y));
            for (const int loadCase : values.cases()) {
                const Stress stress = values.stress(loadCase, x, y);
                for (const double value : {values.state(loadCase).energy(x, y), stress.x, stress.y,
                                           stress.shear, stress.vonMises()})
                    text += ',' + number(value);
            }
            text += '\n';
        }
    return bytesOf(text);
}

std::vector<std::uint8_t> encodeNodesCsv(const AnalysedDesign& analysed) {
    const Values values(analysed);
    std::string text = "x,y";
    for (const int loadCase : values.cases())
        for (const char* name : {"displacement_x", "displacement_y"})
            text += "," + (name + suffix(values, loadCase));
    text += '\n';
    for (int y = 0; y <= values.height; ++y)
        for (int x = 0; x <= values.width; ++x) {
            text += number(x * values.edge) + ',' + number(y * values.edge);
            for (const int loadCase : values.cases()) {
                const PlateState& state = values.state(loadCase);
                for (const double value : {state.displacementX(x, y), state.displacementY(x, y)})
                    text += ',' + (std::isnan(value) ? "" : number(value));
            }
            text += '\n';
        }
    return bytesOf(text);
}

std::vector<std::uint8_t> encodeVti(const AnalysedDesign& analysed) {
    const Values values(analysed);
    const std::string extent =
        "0 " + std::to_string(values.width) + " 0 " + std::to_string(values.height) + " 0 0";
    const std::string edge = exactText(values.edge);
    return bytesOf(
        "<?xml version=\"1.0\"?>\n"
        "<VTKFile type=\"ImageData\" version=\"0.1\" byte_order=\"LittleEndian\">\n"
        "  <ImageData WholeExtent=\"" +
        extent + "\" Origin=\"0 0 0\" Spacing=\"" + edge + ' ' + edge + ' ' + edge +
        "\">\n"
        "    <Piece Extent=\"" +
        extent +
        "\">\n"
        "      <CellData Scalars=\"density\">\n" +
        cellArrays(values) + "      </CellData>\n      <PointData>\n" + pointArrays(values) +
        "      </PointData>\n    </Piece>\n  </ImageData>\n</VTKFile>\n");
}

std::filesystem::path nodesFileOf(const std::filesystem::path& elementsFile) {
    std::filesystem::path file = elementsFile;
    return file.replace_filename(elementsFile.stem().string() + "-nodes" +
                                 elementsFile.extension().string());
}

}  // namespace voxam::inline files
