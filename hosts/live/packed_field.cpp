#include "packed_field.h"

#include <QDataStream>
#include <QIODevice>

#include "format/input_error.h"
#include "format/text.h"

using namespace voxam;
namespace fs = std::filesystem;

namespace {

void setUp(QDataStream& stream) {
    stream.setByteOrder(QDataStream::LittleEndian);
    stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
}

}  // namespace

QString packed(const Field& field) {
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    setUp(stream);
    for (const float value : field.values) stream << value;
    return QString::fromLatin1(qCompress(bytes).toBase64());
}

Field unpacked(const QString& text, const Scene& scene, const fs::path& file) {
    const QByteArray bytes = qUncompress(QByteArray::fromBase64(text.toLatin1()));
    const auto count = static_cast<std::size_t>(bytes.size()) / sizeof(float);
    const auto elements = static_cast<std::size_t>(scene.width) * scene.height;
    int refinement = 1;
    while (refinement < Scene::MAX_DESIGN_REFINEMENT && elements * refinement * refinement < count)
        ++refinement;
    Field field(scene.width * refinement, scene.height * refinement);
    if (field.values.size() != count)
        throw InputError(nameOf(file) + ": the densities of a design do not fit its plate");
    QDataStream stream(bytes);
    setUp(stream);
    for (float& value : field.values) {
        stream >> value;
        if (!(value >= 0 && value <= 1))
            throw InputError(nameOf(file) + ": the densities of a design are not from 0 to 1");
    }
    return field;
}
