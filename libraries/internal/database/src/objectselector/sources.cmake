# Object selector framework (generic tree, items, model, controller, widget)
# and the reference-database selector model.
list(APPEND VN_DB_HEADERS
  src/objectselector/ttree.h)
