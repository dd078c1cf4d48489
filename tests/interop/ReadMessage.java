import java.io.PrintStream;
import java.nio.charset.StandardCharsets;
import java.util.ArrayList;
import java.util.Calendar;
import java.util.List;
import java.util.Map;
import java.util.TreeMap;
import org.apache.poi.hsmf.MAPIMessage;
import org.apache.poi.hsmf.datatypes.AttachmentChunks;
import org.apache.poi.hsmf.datatypes.ByteChunk;
import org.apache.poi.hsmf.datatypes.Chunk;
import org.apache.poi.hsmf.datatypes.MAPIProperty;
import org.apache.poi.hsmf.datatypes.PropertyValue;
import org.apache.poi.hsmf.datatypes.RecipientChunks;
import org.apache.poi.hsmf.datatypes.StringChunk;

/**
 * Prints what Apache POI's HSMF finds in messages: one JSON object per line, in the order of the
 * arguments, which are paths. Binary values are hexadecimal, times are milliseconds since 1970, and
 * missing values are null. The exit status is 1 when POI can't read a message.
 */
class ReadMessage {
    public static void main(String[] paths) throws Exception {
        PrintStream output = new PrintStream(System.out, false, StandardCharsets.US_ASCII);
        for (String path : paths) {
            try (MAPIMessage message = new MAPIMessage(path)) {
                message.setReturnNullOnMissingChunk(true);
                output.println(json(described(message)));
            }
        }
        output.flush();
    }

    private static Map<String, Object> described(MAPIMessage message) throws Exception {
        Map<String, Object> found = new TreeMap<>();
        found.put("messageClass", text(message.getMainChunks().getMessageClass()));
        found.put("kind", String.valueOf(message.getMessageClassEnum()));
        found.put("subject", message.getSubject());
        found.put("topic", message.getConversationTopic());
        found.put("messageId", text(message.getMainChunks().getMessageId()));
        found.put("to", message.getDisplayTo());
        found.put("cc", message.getDisplayCC());
        found.put("bcc", message.getDisplayBCC());
        found.put("body", message.getTextBody());
        // getHtmlBody() decodes UTF-16 as an 8-bit encoding; the bytes themselves are right.
        found.put("html", bytes(message.getMainChunks().getHtmlBodyChunkBinary()));
        found.put("values", values(message.getMainChunks().getProperties()));
        found.put("streams", streams(message.getMainChunks().getChunks()));
        found.put("names", message.getNameIdChunks() == null
                ? null : streams(message.getNameIdChunks().getChunks()));
        found.put("recipients", recipients(message));
        found.put("attachments", attachments(message));
        return found;
    }

    private static List<Object> recipients(MAPIMessage message) {
        List<Object> found = new ArrayList<>();
        for (RecipientChunks recipient : message.getRecipientDetailsChunks()) {
            Map<String, Object> one = new TreeMap<>();
            one.put("number", recipient.recipientNumber);
            one.put("name", text(recipient.recipientDisplayNameChunk));
            one.put("address", text(recipient.recipientEmailChunk));
            one.put("values", values(recipient.getProperties()));
            found.add(one);
        }
        return found;
    }

    private static List<Object> attachments(MAPIMessage message) {
        List<Object> found = new ArrayList<>();
        for (AttachmentChunks attachment : message.getAttachmentFiles()) {
            Map<String, Object> one = new TreeMap<>();
            one.put("storage", attachment.getPOIFSName());
            one.put("data", bytes(attachment.getAttachData()));
            one.put("name", text(attachment.getAttachFileName()));
            one.put("type", text(attachment.getAttachMimeTag()));
            one.put("contentId", text(attachment.getAttachContentId()));
            one.put("streams", streams(attachment.getChunks()));
            found.add(one);
        }
        return found;
    }

    /** Returns property id to value, for the properties of fixed length. */
    private static Map<String, Object> values(Map<MAPIProperty, List<PropertyValue>> properties) {
        Map<String, Object> found = new TreeMap<>();
        for (Map.Entry<MAPIProperty, List<PropertyValue>> property : properties.entrySet()) {
            for (PropertyValue value : property.getValue()) {
                if (value.getActualType().isFixedLength()) {
                    found.put(hexadecimal(property.getKey().id), value.getValue());
                }
            }
        }
        return found;
    }

    /** Returns property tag to text or hexadecimal bytes, for the properties in streams. */
    private static Map<String, Object> streams(Chunk[] chunks) {
        Map<String, Object> found = new TreeMap<>();
        for (Chunk chunk : chunks) {
            if (chunk instanceof StringChunk) {
                found.put(tag(chunk), text((StringChunk) chunk));
            } else if (chunk instanceof ByteChunk) {
                found.put(tag(chunk), bytes((ByteChunk) chunk));
            }
        }
        return found;
    }

    private static String tag(Chunk chunk) {
        return hexadecimal(chunk.getChunkId()) + hexadecimal(chunk.getType().getId());
    }

    private static String hexadecimal(int number) {
        return String.format("%04X", number);
    }

    private static String text(StringChunk chunk) {
        return chunk == null ? null : chunk.getValue();
    }

    private static String bytes(ByteChunk chunk) {
        if (chunk == null || chunk.getValue() == null) {
            return null;
        }
        StringBuilder digits = new StringBuilder();
        for (byte value : chunk.getValue()) {
            digits.append(Character.forDigit(value >> 4 & 15, 16));
            digits.append(Character.forDigit(value & 15, 16));
        }
        return digits.toString();
    }

    private static String json(Object value) {
        StringBuilder written = new StringBuilder();
        write(value, written);
        return written.toString();
    }

    private static void write(Object value, StringBuilder to) {
        if (value == null || value instanceof Number || value instanceof Boolean) {
            to.append(value);
        } else if (value instanceof Calendar) {
            to.append(((Calendar) value).getTimeInMillis());
        } else if (value instanceof Map) {
            String separator = "{";
            for (Map.Entry<?, ?> entry : ((Map<?, ?>) value).entrySet()) {
                to.append(separator);
                write(entry.getKey(), to);
                to.append(':');
                write(entry.getValue(), to);
                separator = ",";
            }
            to.append(separator.equals("{") ? "{}" : "}");
        } else if (value instanceof List) {
            String separator = "[";
            for (Object element : (List<?>) value) {
                to.append(separator);
                write(element, to);
                separator = ",";
            }
            to.append(separator.equals("[") ? "[]" : "]");
        } else {
            writeText(value.toString(), to);
        }
    }

    private static void writeText(String value, StringBuilder to) {
        to.append('"');
        for (int i = 0; i < value.length(); i++) {
            char unit = value.charAt(i);
            if (unit < ' ' || unit > '~' || unit == '"' || unit == '\\') {
                to.append(String.format("\\u%04x", (int) unit));
            } else {
                to.append(unit);
            }
        }
        to.append('"');
    }
}
