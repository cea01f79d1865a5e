// Writes a data file with a list of each kind, for a reader that knows nothing of the library.
#include "trunnion/trunnion.h"

namespace {

void writeSlots(TqIOCL &stream) {
    IntArr integers;
    for (const int value : {5, -6, 7, 8}) {
        integers.AddItemM(value);
    }
    integers.DelItemM(1);
    integers.FmOutputOzkLstM(&stream, "INTEGERS");
    RealArr reals;
    for (const float value : {0.1F, -2.5F}) {
        reals.AddItemM(value);
    }
    reals.FmOutputOzkLstM(&stream, "REALS");
    Point3DArr points;
    float point[3] = {1.0F, 2.0F, 3.0F};
    points.AddItemM(point);
    points.AddItemM(point);
    points.DelItemM(0);
    points.FmOutputOzkLstM(&stream, "POINTS");
}

void writeItems(TqCompressIOCL &stream) {
    NodeArr nodes;
    float point[3] = {0.0F, 0.5F, -1.0F};
    float normal[3] = {0.0F, 0.0F, 1.0F};
    for (int i = 0; i < 3; ++i) {
        NodeCL node(TAG_AVAILABLE);
        point[0] = static_cast<float>(i);
        node.SetPntM(point);
        node.SetNormM(normal);
        nodes.SetItemM(node, i);
    }
    nodes.FmOutputOzkLstM(&stream, "NODES");
    stream.FlushMemoryM(); // what follows is in the next block
    TriangleArr triangles;
    TriangleCL triangle(TAG_AVAILABLE);
    triangle.SetNormM(normal);
    for (int i = 0; i < 2; ++i) {
        triangles.SetItemM(triangle, i);
    }
    triangles.DelItemM(0);
    triangles.FmOutputOzkLstM(&stream, "TRIANGLES");
    QuadArr quads;
    QuadCL quad(TAG_AVAILABLE);
    quad.SetQuadM(3, 2, 1, 0);
    quads.SetItemM(quad, 0);
    quads.FmOutputOzkLstM(&stream, "QUADS");
}

void writeCurve(TqIOCL &stream) {
    float first[3] = {1.0F, 2.0F, 3.0F};
    float second[3] = {4.0F, 5.0F, 6.0F};
    TouchCurD curve;
    slSetLine(&curve, CUR_LINE, first, second);
    curve.direction = CUR_DIR_CCW;
    curve.secondAngle = 0.25F;
    curve.FmOutputOzkFileM(&stream);
}

} // namespace

int main(int argc, char **argv) {
    if (argc != 2) {
        return 2;
    }
    try {
        TqCompressIOCL stream;
        stream.SetVersionNumM(5002);
        stream.OpenM(argv[1], "wb");
        stream.OutputsM("spindle");
        writeSlots(stream);
        writeItems(stream);
        writeCurve(stream);
        stream.FinishSaveM(1);
        stream.CloseM();
    } catch (int) {
        return 1;
    }
    return 0;
}
