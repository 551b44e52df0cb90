#pragma once

/// Kinds of objects. The numbers are stored in database headers and exchanged
/// between modules: never renumber a value.
enum VNObjectType : int {
    VNObjectTypeUnknown = 0,
    VNObjectTypeAnalysis = 1,
    VNObjectTypeSignal = 2,
    VNObjectTypeWell = 3,
    VNObjectTypeProject = 16,
    VNObjectTypePixmap = 17,
    VNObjectTypeDataset = 18,
    VNObjectTypeVariable = 19,
    VNObjectTypeSlice = 20,
    VNObjectTypeIndexation = 256,
    VNObjectTypeIdentification = 260,
    VNObjectTypePeakDetection = 264,
    VNObjectTypeGlobalIndexation = 528,
    VNObjectTypeRatio = 1025,
    VNObjectTypeCompound = 1026,
    VNObjectTypeGraph = 1027,
    VNObjectTypeOverlay = 1028,
    VNObjectTypeToviProcess = 1029,
    VNObjectTypeJoint = 1033,
    VNObjectTypeIon = 1040,
    VNObjectTypeAlias = 1041
};
