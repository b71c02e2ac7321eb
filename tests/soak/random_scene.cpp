#include "random_scene.h"

#include <algorithm>
#include <nlohmann/json.hpp>
#include <vector>

namespace soak {

namespace {

using Json = nlohmann::json;

// Scenes as the reader takes them, with every key that it knows.
class SceneWriter {
public:
    explicit SceneWriter(Dice& dice)
        : dice(dice), width(dice.between(1, 24)), height(dice.between(1, 16)) {}

    Json scene() {
        Json scene = {{"grid", {{"width", width}, {"height", height}}}};
        if (dice.oneIn(2)) loadCases = dice.between(1, 4);
        if (loadCases > 1) scene["loadCases"] = dice.oneIn(2) ? Json(loadCases) : namedCases();
        if (dice.oneIn(3))
            scene["title"] = dice.pick({"Bracket", "\u00dcberbau \"A\"", "", "a\tb"});
        if (dice.oneIn(5)) scene["description"] = "Several\nlines.";
        if (dice.oneIn(2)) scene.update(refinements());
        const bool placed = scene.value("subdivision", 1) == scene.value("meshFactor", 1);
        scene.update(settings(placed, true));
        if (dice.oneIn(2)) scene["densities"] = densities();
        if (dice.oneIn(2)) scene["iterations"] = iterations = dice.between(1, 300);
        if (dice.oneIn(2)) scene["timeline"] = timeline(placed);
        return scene;
    }

private:
    Json refinements() {
        const int subdivision = dice.between(1, 3);
        return {{"subdivision", subdivision},
                {"meshFactor", dice.oneIn(4) ? dice.between(1, 3) : subdivision}};
    }

    Json namedCases() {
        Json list = Json::array();
        for (int i = 0; i < loadCases; ++i) {
            Json item = Json::object();
            if (dice.oneIn(2)) item["name"] = dice.pick({"wind", "Eigengewicht \u00fc", " \"2\" "});
            if (dice.oneIn(2)) item["weight"] = dice.pick({0.001, 0.3, 4.0, 1000.0});
            list.push_back(item);
        }
        return list;
    }

    Json range(int last) {
        if (dice.oneIn(2)) return dice.upTo(last);
        const int from = dice.upTo(last);
        return {from, dice.between(from, last)};
    }

    double force() { return dice.oneIn(2) ? dice.between(-3, 3) : 2e6 * dice.fraction() - 1e6; }

    Json loads() {
        Json list = Json::array();
        for (int i = dice.between(1, 3); i > 0; --i) {
            Json load = {{"x", range(width)}, {"y", range(height)}};
            if (dice.oneIn(2)) load["fx"] = force();
            if (dice.oneIn(2) || !load.contains("fx")) load["fy"] = force();
            if (dice.oneIn(2)) load["loadCase"] = dice.upTo(loadCases - 1);
            list.push_back(load);
        }
        return list;
    }

    Json supports() {
        Json list = {{{"x", 0}, {"y", {0, height}}, {"fix", "xy"}}};
        if (dice.oneIn(4)) list = Json::array();
        for (int i = dice.upTo(2); i > 0; --i) {
            list.push_back(
                {{"x", range(width)}, {"y", range(height)}, {"fix", dice.pick({"x", "y", "xy"})}});
        }
        return list;
    }

    Json area() {
        Json list = Json::array();
        for (int i = dice.upTo(2); i > 0; --i) {
            if (dice.oneIn(2)) {
                list.push_back({{"x", range(width - 1)}, {"y", range(height - 1)}});
                continue;
            }
            const double outer = 1 + 6 * dice.fraction();
            Json radius = outer;
            if (dice.oneIn(2)) radius = {outer * dice.fraction() / 2, outer};
            list.push_back({{"x", width * dice.fraction()},
                            {"y", height * dice.fraction()},
                            {"radius", radius}});
        }
        return list;
    }

    Json drawing(const std::string& characters, int refinement = 1) {
        std::vector<std::string> rows(
            static_cast<std::size_t>(refinement * height),
            std::string(static_cast<std::size_t>(refinement * width), '.'));
        for (std::string& row : rows) {
            for (char& c : row) c = dice.pickFrom(characters);
        }
        return rows;
    }

    Json passive() {
        if (dice.oneIn(2)) return drawing("....o#2");
        return {{dice.pick({"void", "solid", "secondSolid"}), area()}};
    }

    Json densities() {
        if (dice.oneIn(3)) return dice.fraction();
        if (dice.oneIn(8)) return {{dice.pick({"png", "csv"}), "arch.png"}};
        const int refinement = dice.oneIn(3) ? dice.between(2, 3) : 1;
        if (dice.oneIn(2)) return drawing("##..0123456789", refinement);
        std::vector<std::vector<double>> rows(
            static_cast<std::size_t>(refinement * height),
            std::vector<double>(static_cast<std::size_t>(refinement * width)));
        for (auto& row : rows) std::ranges::generate(row, [this] { return dice.fraction(); });
        return rows;
    }

    Json settings(bool placed, bool whole) {
        Json settings = Json::object();
        if (whole || dice.oneIn(2)) settings["loads"] = loads();
        if (whole || dice.oneIn(3)) settings["supports"] = supports();
        if (whole || dice.oneIn(3)) settings["volumeFraction"] = 0.01 + 0.99 * dice.fraction();
        if (dice.oneIn(3)) settings["penalty"] = 1 + 9 * dice.fraction();
        if (placed && dice.oneIn(3)) settings["passive"] = passive();
        if (placed && dice.oneIn(3)) settings["blob"] = area();
        if (dice.oneIn(3)) settings["loadCasesInUse"] = {dice.upTo(loadCases - 1)};
        return settings;
    }

    Json timeline(bool placed) {
        Json list = Json::array();
        int iteration = 1;
        for (int i = dice.upTo(3); i > 0 && iteration < iterations; --i) {
            iteration += dice.between(1, 90);
            Json change = settings(placed, false);
            if (dice.oneIn(3)) change["restart"] = {{"design", "keep"}};
            if (dice.oneIn(4)) {
                change["restart"] = refinements();
                change["restart"]["design"] = "new";
            }
            change["iteration"] = iteration;
            list.push_back(change);
        }
        return list;
    }

    Dice& dice;
    const int width;
    const int height;
    int loadCases = 1;
    int iterations = 100;
};

void collect(Json& value, std::vector<Json*>& all) {
    all.push_back(&value);
    if (!value.is_structured()) return;
    for (Json& element : value) collect(element, all);
}

Json anyValue(Dice& dice) {
    static const std::vector<Json> values = {
        nullptr,       true,          false,      -1,   0,      1,     2,        1000,
        1001,          32768,         2147483647, -0.0, 0.5,    1e300, -1e-300,  1.0000000001,
        1e6,           1e20,          "",         "x",  "keep", "#.#", "\u00e4", "../arch.png",
        Json::array(), Json::object()};
    if (dice.oneIn(8)) return {dice.between(-1, 30), dice.between(-1, 30)};
    return dice.pickFrom(values);
}

// Replaces, removes or adds a value somewhere.
void spoilValue(Json& scene, Dice& dice) {
    std::vector<Json*> all;
    collect(scene, all);
    Json& target = *dice.pickFrom(all);
    if (target.is_object() && !target.empty() && dice.oneIn(2)) {
        auto member = target.begin();
        std::advance(member, dice.upTo(static_cast<int>(target.size()) - 1));
        const Json value = *member;
        if (dice.oneIn(2)) target[dice.pick({"x", "radius", "colour", "png", "restart"})] = value;
        if (dice.oneIn(2)) target.erase(member.key());
    } else if (target.is_array() && !target.empty() && dice.oneIn(2)) {
        if (dice.oneIn(2)) target.push_back(Json(target.front()));
        if (dice.oneIn(2)) target.erase(0);
    } else {
        target = anyValue(dice);
    }
}

void spoilByte(std::string& text, Dice& dice) {
    const std::size_t place = dice.bits() % (text.size() + 1);
    if (dice.oneIn(4))
        text.erase(place, static_cast<std::size_t>(dice.upTo(4)));
    else if (dice.oneIn(3))
        text.insert(place, 1, static_cast<char>(dice.bits()));
    else if (dice.oneIn(2))
        text.insert(place, text.substr(place, static_cast<std::size_t>(dice.upTo(40))));
    else
        text.insert(place, dice.pick({"{", "]", ",", "\"", "\\u0000", "-", "9999999999"}));
}

}  // namespace

std::string randomScene(Dice& dice) {
    Json scene = SceneWriter(dice).scene();
    const bool good = dice.oneIn(2);
    if (!good) {
        for (int i = dice.upTo(3); i > 0; --i) spoilValue(scene, dice);
    }
    std::string text = scene.dump(dice.oneIn(2) ? 4 : -1);
    if (!good && dice.oneIn(2)) {
        for (int i = dice.between(1, 3); i > 0; --i) spoilByte(text, dice);
    }
    return text;
}

}  // namespace soak
