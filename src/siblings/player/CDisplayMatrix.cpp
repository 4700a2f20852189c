#include "siblings/player/CDisplayMatrix.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <iterator>
#include <span>

namespace
{
using Matrix = int32_t[9];

bool FindMatrix(const AVCodecParameters& parameters, Matrix& matrix)
{
    for (const AVPacketSideData& data : std::span(parameters.coded_side_data, static_cast<size_t>(parameters.nb_coded_side_data)))
        if (data.type == AV_PKT_DATA_DISPLAYMATRIX && data.size >= sizeof(Matrix))
        {
            memcpy(matrix, data.data, sizeof(Matrix));
            return true;
        }
    return false;
}

// A matrix that turns a picture over has a negative determinant. Its sign is all that counts, which double has exactly.
bool IsMirroring(const Matrix& matrix)
{
    return static_cast<double>(matrix[0]) * matrix[4] < static_cast<double>(matrix[1]) * matrix[3];
}

// Takes a mirroring from left to right out of the matrix, which comes before everything else that it does.
void TakeMirroring(Matrix& matrix)
{
    for (const int index : {0, 1})
        matrix[index] = matrix[index] == INT32_MIN ? INT32_MAX : -matrix[index];
}
}

CDisplayMatrix::CDisplayMatrix(const CZVAVLibraries& codec, const AVStream& stream)
{
    Matrix matrix = {};
    if (!FindMatrix(*stream.codecpar, matrix))
        return;
    IsMirrored = IsMirroring(matrix);
    if (IsMirrored)
        TakeMirroring(matrix);
    // Counterclockwise, from -180 to 180, or not a number.
    const double angle = codec.av_display_rotation_get(matrix);
    if (!std::isnan(angle))
        Rotation = (4 - static_cast<int32_t>(std::lround(angle / 90))) % 4 * 90;
}
