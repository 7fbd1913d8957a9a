package foreign;

import com.orvane.kelbrin.adapters.tolmcommon.datamodel.BaseMetric;
import java.io.IOException;
import java.io.ObjectInputStream;

/** Looks like one of the data model's, but is not. */
public class ForeignMetric extends BaseMetric {
    private static final long serialVersionUID = 1L;

    private void readObject(ObjectInputStream in) throws IOException, ClassNotFoundException {
        Readings.note();
        in.defaultReadObject();
    }
}
