# Object selector framework (generic tree, items, model, controller, widget)
# and the reference-database selector model.
list(APPEND VN_DB_HEADERS
  src/objectselector/ttree.h
  src/objectselector/objectselectoriteminterface.h
  src/objectselector/objectselectoritem.h
  src/objectselector/objectselectormodelinterface.h
  src/objectselector/objectselectormodel.h
  src/objectselector/objectselectoreditorobserverinterface.h
  src/objectselector/objectselectoreditorinterface.h
  src/objectselector/objectselectortreemodel.h
  src/objectselector/objectselectoreditor.h
  src/objectselector/objectselectorctrlinterface.h
  src/objectselector/objectselectorctrl.h
  src/objectselector/objectselectordatabaseitem.h
  src/objectselector/objectselectordatabaseobjectitem.h
  src/objectselector/objectselectordatabasemodel.h)
list(APPEND VN_DB_SOURCES
  src/objectselector/objectselectoriteminterface.cpp
  src/objectselector/objectselectoritem.cpp
  src/objectselector/objectselectormodelinterface.cpp
  src/objectselector/objectselectormodel.cpp
  src/objectselector/objectselectoreditorobserverinterface.cpp
  src/objectselector/objectselectoreditorinterface.cpp
  src/objectselector/objectselectortreemodel.cpp
  src/objectselector/objectselectoreditor.cpp
  src/objectselector/objectselectorctrlinterface.cpp
  src/objectselector/objectselectorctrl.cpp
  src/objectselector/objectselectordatabaseitem.cpp
  src/objectselector/objectselectordatabaseobjectitem.cpp
  src/objectselector/objectselectordatabasemodel.cpp)
list(APPEND VN_DB_PRIVATE src/objectselector/objectselectoritem_p.h src/objectselector/objectselectoreditor_p.h)
