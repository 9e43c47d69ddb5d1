// DTD validation support (being written).
